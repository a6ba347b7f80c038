// The write options panel: the options string it composes, its switches,
// and the script file it saves.
#include "qrtzebcore.h"

#include "qrtroad_helpers.h"
#include "readonlydir.h"
#include "scratchdir.h"

#include <QDialog>
#include <QDir>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>
#include <QTextEdit>

#include <optional>

namespace
{

const QString defaults = "OKT_ZEBWRITE_OPTIONS= fast_invar      strip_face ";
const QString noSketch = "Missing Sketch File: You must supply a sketch filename. [OK]";

} // namespace

class TestQRTZEBCore : public QObject
{
    Q_OBJECT

private slots:
    void sliderText_data();
    void sliderText();
    void optionsString_data();
    void optionsString();
    void mnemonicsChooseTabs();
    void twoPanelsShareNothing();
    void scriptFile_data();
    void scriptFile();
};

void TestQRTZEBCore::sliderText_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("mesh");
    QTest::addColumn<QString>("face");
    for (const auto& [value, mesh] :
         {std::pair{0, "00"}, {5, "05"}, {9, "09"}, {10, "10"}, {15, "15"}, {30, "30"}})
        QTest::newRow(mesh) << value << mesh << QString::number(value);
}

void TestQRTZEBCore::sliderText()
{
    QFETCH(int, value);
    QFETCH(QString, mesh);
    QFETCH(QString, face);
    QRTZEBCore core(nullptr, "QRTZEBLator_Core");
    QCOMPARE(widget<QLabel>(&core, "meshLbl")->text() + widget<QLabel>(&core, "faceLbl")->text(),
             "15 %15 deg");
    // By way of 20, so that every row moves the sliders.
    apply(&core,
          QString("Apply;meshResSL=20;faceSmoothSL=20;meshResSL=%1;faceSmoothSL=%1").arg(value));
    QCOMPARE(widget<QLabel>(&core, "meshLbl")->text(), mesh + " %");
    QCOMPARE(widget<QLabel>(&core, "faceLbl")->text(), face + " deg");
    QCOMPARE(core.writeOptions(), defaults + "coarsen(0." + mesh + ", " + face + ", 1)");
}

void TestQRTZEBCore::optionsString_data()
{
    QTest::addColumn<QString>("settings");
    QTest::addColumn<QString>("options");
    const auto row = [](const char* name, const char* settings, const char* options) {
        QTest::newRow(name) << settings
                            << (*options ? "OKT_ZEBWRITE_OPTIONS= " : "") + QString(options);
    };
    row("defaults", "", "fast_invar      strip_face ");
    row("coarsening on", "Apply", "fast_invar      strip_face coarsen(0.15, 15, 1)");
    row("preserve, SI", "Apply;meshResSL=5;faceSmoothSL=20;Remove Col;Preserve;unitsCB=SI",
        "fast_invar MKS     strip_face coarsen(0.05, 20, 0, preserve_str)");
    row("nodes, full set, platform, zero entries",
        "Apply;meshResSL=10;faceSmoothSL=8;Nodes=1 3:10 11 15;invarCB=Full Set;"
        "formatCB=Platform Specific;sparseModesCB=Remove zero entries;Remove Int",
        "full_invar  no_xdr   sparse_str  coarsen(0.10, 8, 1, 1 3:10 11 15)");
    row("nodes and preserve, single, full modes",
        "Apply;meshResSL=30;faceSmoothSL=30;Nodes=7 9:12;Preserve;precisionCB=Single;"
        "sparseModesCB=Full",
        "fast_invar   single  full_str strip_face coarsen(0.30, 30, 1, 7 9:12, preserve_str)");
    row("sketch",
        "tab=1;sketchCombo=D:/models/bracket.dat;invarCB=Full Set;unitsCB=SI;"
        "formatCB=Platform Specific;precisionCB=Single;sparseModesCB=Full",
        "full_invar MKS no_xdr single  full_str  sketch(D:/models/bracket.dat)");
    row("rigid only, SI", "Rigid;unitsCB=SI", " MKS   empty  strip_face ");
    row("rigid hides chosen boxes", "invarCB=Full Set;sparseModesCB=Full;Rigid;Apply;Preserve",
        "    empty  strip_face coarsen(0.15, 15, 1, preserve_str)");
    row("no invariants, no solid faces", "invarCB=None;Remove Int", "       ");
    row("blank node list", "Apply;Nodes= ", "fast_invar      strip_face coarsen(0.15, 15, 1,  )");
    row("manual ignores faces and coarsening", "Apply;Preserve;tab=1;sketchCombo=s k.dat",
        "fast_invar       sketch(s k.dat)");
    row("sketch name in UTF-8", "tab=1;sketchCombo=Übung/Träger 1.dat;precisionCB=Single",
        "fast_invar   single    sketch(Übung/Träger 1.dat)");
    row("manual, no sketch name", "Apply;tab=1", "");
    row("all five boxes changed",
        "invarCB=Full Set;unitsCB=SI;formatCB=Platform Specific;precisionCB=Single;"
        "sparseModesCB=Remove zero entries",
        "full_invar MKS no_xdr single  sparse_str strip_face ");
    row("coarsening off hides its values", "Apply;meshResSL=3;Nodes=5;Preserve;Apply",
        "fast_invar      strip_face ");
    row("coarsening off and on keeps them",
        "Apply;meshResSL=7;faceSmoothSL=22;Nodes=1 3:10;Remove Col;Preserve;Apply;Apply",
        "fast_invar      strip_face coarsen(0.07, 22, 0, 1 3:10, preserve_str)");
    row("rigid off again keeps the items", "invarCB=Full Set;sparseModesCB=Full;Rigid;Rigid",
        "full_invar     full_str strip_face ");
    row("manual and back keeps all", "Apply;Nodes=9;tab=1;sketchCombo=a.dat;tab=0",
        "fast_invar      strip_face coarsen(0.15, 15, 1, 9)");
    row("manual again keeps the sketch", "tab=1;sketchCombo=a.dat;tab=0;Remove Int;tab=1",
        "fast_invar       sketch(a.dat)");
}

void TestQRTZEBCore::optionsString()
{
    QFETCH(QString, settings);
    QFETCH(QString, options);
    QRTZEBCore core(nullptr, "QRTZEBLator_Core");
    apply(&core, settings);
    // The switches keep the controls consistent whatever came before.
    const bool coarsening = widget<QAbstractButton>(&core, "Apply")->isChecked();
    for (const char* key :
         {"meshResSL", "faceSmoothSL", "Nodes", "Remove Col", "Preserve", "meshLbl", "faceLbl"})
        QCOMPARE(widget(&core, key)->isEnabled(), coarsening);
    const bool rigid = widget<QAbstractButton>(&core, "Rigid")->isChecked();
    QCOMPARE(widget(&core, "invarCB")->isEnabled(), !rigid);
    QCOMPARE(widget(&core, "sparseModesCB")->isEnabled(), !rigid);
    DialogAnswerer answers;
    if (options.isEmpty())
        answers.pressButton("OK");
    QCOMPARE(core.writeOptions(), options);
    VERIFY_DIALOGS(answers);
    QCOMPARE(messages(answers), options.isEmpty() ? QStringList{noSketch} : QStringList());
}

void TestQRTZEBCore::mnemonicsChooseTabs()
{
    QWidget window;
    auto* core = new QRTZEBCore(&window, "QRTZEBLator_Core");
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto* stack = core->findChild<QStackedWidget*>("WidgetStack");
    QTest::keyClick(&window, Qt::Key_M, Qt::AltModifier);
    QVERIFY(stack->currentWidget()->isAncestorOf(widget(core, "sketchCombo")));
    QTest::keyClick(&window, Qt::Key_A, Qt::AltModifier);
    QCOMPARE(stack->currentWidget()->objectName(), "autoPage");
}

void TestQRTZEBCore::twoPanelsShareNothing()
{
    QRTZEBCore first(nullptr, "QRTZEBLator_Core");
    QRTZEBCore second(nullptr, "QRTZEBLator_Core");
    apply(&first, "Apply;meshResSL=2;unitsCB=SI;Rigid;tab=1;sketchCombo=x");
    QCOMPARE(second.writeOptions(), defaults);
    apply(&second, "Apply");
    QCOMPARE(first.writeOptions(), "OKT_ZEBWRITE_OPTIONS=  MKS   empty   sketch(x)");
}

void TestQRTZEBCore::scriptFile_data()
{
    // place: "" the scratch directory, "locked" a read-only one, "taken" a
    // directory named zebscript.dat; bytes: the file afterwards.
    QTest::addColumn<QString>("settings");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("boxes");
    const QString unable = "Unable To Write: Unable to write zeb write options to current "
                           "directory.  Check %1. [OK]";
    QTest::newRow("defaults, 50 bytes") << ""
                                        << "" << (defaults + "\n").toUtf8() << QStringList();
    QTest::newRow("no sketch name, one byte") << "tab=1"
                                              << "" << QByteArray("\n") << QStringList{noSketch};
    QTest::newRow("sketch name in UTF-8")
        << "tab=1;sketchCombo=Tr\u00e4ger.dat"
        << "" << QByteArray("OKT_ZEBWRITE_OPTIONS= fast_invar       sketch(Tr\xc3\xa4ger.dat)\n")
        << QStringList();
    QTest::newRow("read-only directory")
        << ""
        << "locked" << QByteArray() << QStringList{unable.arg("permissions")};
    QTest::newRow("name taken by a directory")
        << ""
        << "taken" << QByteArray() << QStringList{unable.arg("disk space")};
}

void TestQRTZEBCore::scriptFile()
{
    QFETCH(QString, settings);
    QFETCH(QString, place);
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, boxes);
    ScratchDir dir;
    std::optional<ReadOnlyDir> locked;
    if (place == "locked") {
        locked.emplace();
        QVERIFY2(locked->isValid(), "cannot make a directory read-only here");
        QVERIFY(QDir::setCurrent(locked->path()));
    }
    QVERIFY(place == "taken"
                ? QDir().mkdir("zebscript.dat")
                : place == "locked" || dir.write("zebscript.dat", QByteArray(99, 'x')));
    QRTZEBCore core(nullptr, "QRTZEBLator_Core");
    apply(&core, settings);
    DialogAnswerer answers;
    for (int i = 0; i < boxes.size(); ++i)
        answers.pressButton("OK");
    QString listed;
    if (place.isEmpty()) {
        answers.handleDialog([&](QWidget* dialog) {
            listed =
                dialog->windowTitle() + ": " + widget<QTextEdit>(dialog, "TextEdit")->toPlainText();
            widget<QPushButton>(dialog, "Close")->click();
        });
    }
    QTest::mouseClick(widget(&core, "Generate a \"zebscript.dat\" file"), Qt::LeftButton);
    VERIFY_DIALOGS(answers);
    QCOMPARE(messages(answers), boxes);
    QCOMPARE(dir.read("zebscript.dat"), bytes);
    if (settings.isEmpty() && place.isEmpty())
        QCOMPARE(bytes.size(), 50);
    QCOMPARE(listed, place.isEmpty() ? "Information: " + QDir::currentPath() + "/zebscript.dat"
                                     : QString());
    QDir::setCurrent(dir.path());
}

QTEST_MAIN(TestQRTZEBCore)
#include "test_qrtzebcore.moc"
