// The QRT->ZEB road: the write options panel, its look, string and script
// file, and the translator tab through batch file, console and stand-in
// translator to the ZEB file it writes.
#include "fulldir.h"
#include "qrtroad_helpers.h"
#include "qrtzebcore.h"
#include "qrtzeblator.h"
#include "readonlydir.h"
#include "scratchdir.h"
#include "standins.h"

#include <QPushButton>
#include <QTextEdit>

#include <optional>
#include <unistd.h>

const QString sketchBox = noSketch + " OK/OK";

class TestQRTRoad : public QObject
{
    Q_OBJECT

private slots:
    void twoPanelsMnemonicsAndLook()
    {
        QWidget window;
        auto* first = new QRTZEBCore(&window, "QRTZEBLator_Core");
        QRTZEBCore second(nullptr, "QRTZEBLator_Core");
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        apply(first, "Apply;meshResSL=9;faceSmoothSL=0;unitsCB=SI;Rigid;sketchCombo=x");
        QTest::keyClick(&window, Qt::Key_M, Qt::AltModifier);
        auto* stack = first->findChild<QStackedWidget*>("WidgetStack");
        QVERIFY(stack->currentWidget()->isAncestorOf(widget(first, "sketchCombo")));
        // The second panel's labels as built: no signal sets them at construction.
        const auto labels = [](QWidget* core) {
            return widget<QLabel>(core, "meshLbl")->text() +
                   widget<QLabel>(core, "faceLbl")->text();
        };
        QCOMPARE(labels(first) + labels(&second), "09 %0 deg15 %15 deg");
        QCOMPARE(second.writeOptions(), entry + defaults);
        apply(&second, "Apply");
        QCOMPARE(first->writeOptions(), "OKT_ZEBWRITE_OPTIONS=  MKS   empty   sketch(x)");
        QTest::keyClick(&window, Qt::Key_A, Qt::AltModifier);
        QCOMPARE(stack->currentWidget()->objectName(), "autoPage");

        // What a tidy hand would change: the tool tips and example lines with their
        // typos and runs of blanks, the sliders' steps, and (on both pages, at the
        // panel's smallest) room between a frame and what it holds.
        second.resize(second.minimumSizeHint());
        second.show();
        QStringList look = touchingTheirFrame(&second, {second.objectName(), "rightBox"});
        apply(&second, "tab=1");
        QCoreApplication::sendPostedEvents();
        look += touchingTheirFrame(&second, {second.objectName(), "rightBox"});
        for (QWidget* w : second.findChildren<QWidget*>())
            look += w->toolTip();
        for (QLabel* line : widget(&second, "3 ")->parentWidget()->findChildren<QLabel*>())
            look += line->text();
        for (QSlider* s : second.findChildren<QSlider*>())
            look += QString("%1-%2/%3").arg(s->minimum()).arg(s->maximum()).arg(s->pageStep());
        look.removeAll("");
        QCOMPARE(look, (QStringList{
                           "Compute inertia invariants and store in ZEB.  Full can be quite slow.",
                           "ZEBs with SI units perform better with Ondrel/View",
                           "Generate a \"zebscript.dat\" file with the ZEB write options.",
                           "Recommended for improved graphics performance.",
                           "Limit node density the ration of this component size.",
                           "Parallel face angle tolerance",
                           "Remove co-linear edge nodes after coarsening.",
                           "Nodes which will be preserved during coarsening. Example: 1 3:10 11 15",
                           "3                           Sketch geometry has three faces.",
                           "2 1 3                     Two vertex 'face' from NODEID 1 to 3",
                           "3 3 4 5                  Triangular face connecting nodes 3, 4 and 5",
                           "4 11 12 13 14       Four node face connecting nodes 11, 12, 13 and 14",
                           "0-30/1", "0-30/1"}));
    }

    void scriptFile_data()
    {
        // place: "" the scratch directory, "locked" a read-only one, "taken" a
        // directory named zebscript.dat.
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("place");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("box");
        const auto row = [](const char* name, const char* settings, const char* place,
                            const QByteArray& bytes, const QString& box = {}) {
            QTest::newRow(name) << settings << place << bytes << box;
        };
        const QString unable = "Unable To Write: Unable to write zeb write options to current "
                               "directory.  Check %1 [OK] OK/OK";
        row("defaults, 50 bytes", "", "", "OKT_ZEBWRITE_OPTIONS= fast_invar      strip_face \n");
        row("no sketch name, one byte", "tab=1", "", "\n", sketchBox);
        row("sketch name in UTF-8", "tab=1;sketchCombo=Tr\u00e4ger.dat", "",
            "OKT_ZEBWRITE_OPTIONS= fast_invar       sketch(Tr\xc3\xa4ger.dat)\n");
        row("read-only directory", "", "locked", "", unable.arg("permissions."));
        row("name taken by a directory", "", "taken", "",
            unable.arg("disk space.\nIs a directory"));
        row("working directory deleted", "", "deleted", "",
            unable.arg("permissions.\nThe directory no longer exists."));
        row("disk full: reason told, old file kept", "", "full", "old\n",
            unable.arg("disk space.\nNo space left on device"));
    }

    void scriptFile()
    {
        QFETCH(QString, settings);
        QFETCH(QString, place);
        QFETCH(QString, box);
        std::optional<ReadOnlyDir> locked;
        std::optional<FullDir> full;
        ScratchDir dir; // goes first, out of the mounts, so that they can be undone
        if (place == "locked")
            QVERIFY2(locked.emplace().isValid(), "cannot make a directory read-only here");
        if (place == "full" && !full.emplace("zebscript.dat").isValid()) {
            if (::geteuid() != 0)
                QSKIP("needs root to mount a full file system");
            QFAIL("cannot mount a full file system");
        }
        const QString gone = dir.filePath("gone");
        QVERIFY(place != "deleted" ||
                (QDir().mkdir(gone) && QDir::setCurrent(gone) && QDir().rmdir(gone)));
        if (locked || full)
            QVERIFY(QDir::setCurrent(locked ? locked->path() : full->path()));
        QVERIFY(place == "taken" ? QDir().mkdir("zebscript.dat")
                                 : place != "" || dir.write("zebscript.dat", QByteArray(99, 'x')));
        QRTZEBCore core(nullptr, "QRTZEBLator_Core");
        DialogAnswerer answers;
        if (!box.isEmpty())
            answers.pressButton("OK");
        QString listed;
        if (place.isEmpty())
            answers.handleDialog([&](QWidget* dialog) {
                listed = widget<QTextEdit>(dialog, "TextEdit")->toPlainText();
                widget<QPushButton>(dialog, "Close")->click();
            });
        apply(&core, settings);
        QTest::mouseClick(widget(&core, "Generate a \"zebscript.dat\" file"), Qt::LeftButton);
        VERIFY_DIALOGS(answers);
        QCOMPARE(answers.boxes().join('|'), box);
        QFile written("zebscript.dat"); // where the program wrote it
        QTEST(written.open(QIODevice::ReadOnly) ? written.readAll() : QByteArray(), "bytes");
        QCOMPARE(listed, place.isEmpty() ? QDir::currentPath() + "/zebscript.dat" : QString());
    }

    void road_data()
    {
        // settings: "|" between runs; input: a relative name is a copy of the
        // sample in the scratch directory; options: the environment afterwards,
        // " earlier" before.
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("input");
        QTest::addColumn<QStringList>("boxes");
        QTest::addColumn<QString>("options");
        QTest::addColumn<int>("runs");
        const auto row = [](const char* name, const QString& settings, const QString& input,
                            const QStringList& boxes, const QString& options, int runs) {
            QTest::newRow(name) << settings << input << boxes << options << runs;
        };
        // The panel's settings and the options one run gets from them.
        const auto panel = [&row](const char* name, const char* settings, const char* options) {
            row(name, settings, "beam.out", {}, QString(" ") + options, 1);
        };
        panel("nodes, full set, platform, zero entries",
              "Apply;meshResSL=10;faceSmoothSL=8;Nodes=1 3:10 11 15;invarCB=Full Set;"
              "formatCB=Platform Specific;sparseModesCB=Remove zero entries;Remove Int",
              "full_invar  no_xdr   sparse_str  coarsen(0.10, 8, 1, 1 3:10 11 15)");
        panel("sketch",
              "tab=1;sketchCombo=D:/models/bracket.dat;invarCB=Full Set;unitsCB=SI;"
              "formatCB=Platform Specific;precisionCB=Single;sparseModesCB=Full",
              "full_invar MKS no_xdr single  full_str  sketch(D:/models/bracket.dat)");
        panel("rigid hides chosen boxes, SI, coarsening on",
              "invarCB=Full Set;sparseModesCB=Full;Rigid;unitsCB=SI;Apply",
              " MKS   empty  strip_face coarsen(0.15, 15, 1)");
        panel("no invariants, no solid faces", "invarCB=None;Remove Int", "       ");
        panel("blank node list, slider at 9 and 0", "Apply;meshResSL=9;faceSmoothSL=0;Nodes= ",
              "fast_invar      strip_face coarsen(0.09, 0, 1,  )");
        panel("manual ignores faces and coarsening", "Apply;Preserve;tab=1;sketchCombo=s k.dat",
              "fast_invar       sketch(s k.dat)");
        panel("coarsening off hides its values", "Apply;meshResSL=3;Nodes=5;Preserve;Apply",
              "fast_invar      strip_face ");
        panel("coarsening off and on, manual and back keep all, slider at 0 and 9",
              "Apply;meshResSL=0;faceSmoothSL=9;Nodes=1 3:10;Remove Col;Preserve;Apply;Apply;"
              "tab=1;sketchCombo=a.dat;tab=0",
              "fast_invar      strip_face coarsen(0.00, 9, 0, 1 3:10, preserve_str)");
        panel("rigid off again, manual again keep the items and the sketch",
              "invarCB=Full Set;sparseModesCB=Full;Rigid;Rigid;tab=1;sketchCombo=a.dat;tab=0;"
              "Remove Int;tab=1",
              "full_invar     full_str  sketch(a.dat)");
        const QString nodes = QString("1 3:10 ").repeated(100 * 1024 / 7);
        row("second run after a change, blanks and umlauts",
            "|tab=1;sketchCombo=$(id) Skizze ä.dat", "Übung/Träger 1.out", {},
            " fast_invar       sketch($(id) Skizze ä.dat)", 2);
        row("100 KB node list", "Apply;Nodes=" + nodes, "beam.out", {},
            defaults + "coarsen(0.15, 15, 1, " + nodes + ")", 1);
        const QString missingInput =
            "Missing Input File: Please supply an input QRT file. [OK] OK/OK";
        row("input missing, options set all the same", "", "", {missingInput}, defaults, 0);
        row("sketch and input missing, in that order", "tab=1", "", {sketchBox, missingInput},
            " earlier", 0);
        row("input file does not exist", "", "nosuch.out",
            {"Translation Problems: Translating QRT to ZEB problems.\nCheck your environment, "
             "permissions. [OK] OK/OK"},
            defaults, 1);
        // Over the kernel's limit it would break every later run, of every tab.
        const QString tooMany = QString("1 ").repeated(64 * 1024);
        row("options over the limit: refused, old entry kept", "Apply;Nodes=" + tooMany, "beam.out",
            {"Write Options Too Long: The write options are 131143 bytes long, but an environment "
             "entry may hold at most 131071 bytes.\nShorten the node list. Nothing was run. [OK] "
             "OK/OK"},
            " earlier", 0);
        // Exactly at the limit it still fits: the kernel's limit counts the NUL.
        const QString most = QString("1 ").repeated(65500);
        row("options at the limit: set", "Apply;Nodes=" + most, "beam.out", {},
            defaults + "coarsen(0.15, 15, 1, " + most + ")", 1);
    }

    void road()
    {
        QFETCH(QString, settings);
        QFETCH(QString, input);
        QFETCH(QStringList, boxes);
        QFETCH(QString, options);
        QFETCH(int, runs);
        ScratchDir dir;
        Standins standins(dir.path());
        qputenv("OKT_ZEBWRITE_OPTIONS", " earlier");
        const QString sample = Standins::examplesDir() + "/bracket.out";
        QVERIFY(QDir().mkpath("Übung") && QFile::copy(sample, "beam.out") &&
                QFile::copy(sample, "Übung/Träger 1.out"));
        DialogAnswerer answers;
        for (int i = 0; i < boxes.size(); ++i)
            answers.pressButton("OK");
        QRTZEBLator tab(nullptr, "QRTZEBLator");
        auto* core = tab.findChild<QRTZEBCore*>("QRTZEBLator_Core");
        widget<QLineEdit>(&tab, "input")->setText(input);
        for (const QString& step : settings.split('|')) {
            apply(core, step);
            QTest::mouseClick(widget(&tab, "Begin Translatiion"), Qt::LeftButton);
        }
        VERIFY_DIALOGS(answers);
        QCOMPARE(answers.boxes(), boxes);
        QCOMPARE(qEnvironmentVariable("OKT_ZEBWRITE_OPTIONS"), options);
        // The switches keep the controls consistent whatever came before.
        const bool coarsening = widget<QAbstractButton>(core, "Apply")->isChecked();
        for (const char* key :
             {"meshResSL", "faceSmoothSL", "Nodes", "Remove Col", "Preserve", "meshLbl", "faceLbl"})
            QCOMPARE(widget(core, key)->isEnabledTo(core), coarsening);
        const bool rigid = widget<QAbstractButton>(core, "Rigid")->isChecked();
        for (const char* key : {"invarCB", "sparseModesCB"})
            QCOMPARE(widget(core, key)->isEnabledTo(core), !rigid);
        QCOMPARE(standins.runs().size(), runs);
        if (!runs)
            return;
        QCOMPARE(standins.runs().constLast().options, options); // as the translator saw them
        QCOMPARE(dir.read("runtamsel.bat").split('\n').value(5),
                 (Standins::program("qrt2zeb-standin") + " \"" + input + "\"").toLocal8Bit());
    }

    // A Debian terminal takes the window's title with -T; it names what runs.
    void consoleTitle()
    {
        ScratchDir dir;
        Standins standins(dir.path()); // puts the variables back
        QVERIFY(dir.write("x-terminal-emulator",
                          "#!/bin/sh\nprintf '%s|' \"$@\" >terminal.log\nshift 3\nexec \"$@\"\n",
                          true));
        qunsetenv("TAMSEL_TERMINAL");
        qputenv("DISPLAY", ":0");
        qputenv("PATH", dir.path().toLocal8Bit());
        QRTZEBLator tab(nullptr, "QRTZEBLator");
        widget<QLineEdit>(&tab, "input")->setText(Standins::examplesDir() + "/bracket.out");
        QTest::mouseClick(widget(&tab, "Begin Translatiion"), Qt::LeftButton);
        QCOMPARE(dir.read("terminal.log").split('|').mid(0, 3),
                 (QList<QByteArray>{"-T", "Tamsel: Translating QRT to ZEB", "-e"}));
    }
};

QTEST_MAIN(TestQRTRoad)
#include "test_qrtroad.moc"
