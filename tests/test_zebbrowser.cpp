// The browser tab: its blocks, ticks and both roads with the stand-in
// translator or one that misbehaves, the report names and the status rule,
// and the pages built from the reports.
#include "zebbrowser.h"

#include "app_qmfilelineedit.h"
#include "blockview.h"
#include "qmlistdialog.h"
#include "qrtroad_helpers.h"
#include "scratchdir.h"
#include "standins.h"
#include "tamsel.h"
#include "zebreport.h"

#include "platform/commandline.h"
#include "platform/wait.h"

#include <algorithm>
#include <memory>

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QCheckBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QProcess>
#include <QProgressDialog>
#include <QScopedValueRollback>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace
{

// Ticks the named blocks when names are given; returns the ticked ones.
QStringList ticks(ZEBBrowser& tab, const QStringList* names = nullptr)
{
    QStringList ticked;
    for (auto* box : tab.findChildren<QCheckBox*>()) {
        if (names)
            box->setChecked(names->contains(box->text()));
        if (box->isChecked())
            ticked << box->text();
    }
    for (QTreeWidgetItemIterator item(tab.findChild<QTreeWidget*>()); *item; ++item) {
        if (names)
            (*item)->setCheckState(0,
                                   names->contains((*item)->text(0)) ? Qt::Checked : Qt::Unchecked);
        if ((*item)->checkState(0) == Qt::Checked)
            ticked << (*item)->text(0);
    }
    return ticked;
}

// The data lines of a block of the sample, as its page shows them: all, or
// this many.
QString sample(int block, int lines = 1 << 30)
{
    QFile f(Standins::examplesDir() + "/beam.zeb");
    f.open(QIODevice::ReadOnly);
    QString text;
    bool inBlock = false;
    for (const QByteArray& line : f.readAll().split('\n')) {
        if (line.startsWith("block ") || line == "end")
            inBlock = line.startsWith("block " + QByteArray::number(block) + " ");
        else if (inBlock && !line.isEmpty() && lines-- > 0)
            text += QString::fromUtf8(line) + "\n";
    }
    return text;
}

// Mounts a file system that keeps whole seconds (ext2 with small inodes)
// over the directory, and goes in, for as long as it lives.
struct WholeSeconds {
    explicit WholeSeconds(const QString& dir) : mount(dir)
    {
        const QString image = mount + ".img";
        mounted =
            !dir.isEmpty() &&
            QProcess::execute("sh", {"-c",
                                     "truncate -s 4M \"$1\" && mke2fs -q -I 128 -F \"$1\" "
                                     "2>/dev/null && mount -o loop \"$1\" \"$2\" && rm \"$1\"",
                                     "sh", image, mount}) == 0 &&
            QDir::setCurrent(mount);
    }
    ~WholeSeconds()
    {
        if (mounted && QDir::setCurrent("/"))
            QProcess::execute("umount", {mount});
    }
    QString mount;
    bool mounted = false;
};

// The translator becomes this script unless it is empty; the report is
// planted as a link to a victim, or as a stale file.
bool plant(const ScratchDir& dir, const QString& tool, const QString& report, bool link)
{
    if (!tool.isEmpty() && !(dir.write("tool", tool.toUtf8(), true) &&
                             qputenv("OKT_ZEB2MTX", dir.filePath("tool").toLocal8Bit())))
        return false;
    return dir.write("victim", "keep") &&
           (link ? QFile::link("victim", report) : dir.write(report, "from before\n"));
}

} // namespace

class TestZEBBrowser : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        ZEBReport::progressDialogMade = nullptr;
        ZEBReport::runTool = platform::runCommandLine;
    }

    void blocksAndTicks()
    {
        // clang-format off
        const QStringList table{
            "Version code 1 ZEB File Info", "Header 2 ZEB File Info", "Content Summary 3 ZEB File Info",
            "Units 11 ZEB File Info", "Eigenvalues 7 Modal Properties",
            "Generalized Mass 13 Modal Properties", "Generalized Stiffness 12 Modal Properties",
            "Generalized Damping 15 Modal Properties", "Mode Shape Transformation 16 Modal Properties",
            "Mode Shapes 8 Modal Properties", "Stress Modes 18 Modal Properties",
            "Strain Modes 29 Modal Properties", "Modal Loads 28 Modal Properties",
            "Preloads 27 Modal Properties", "Global Body Properties 6 FEM Properties",
            "Nodal Coordinates 4 FEM Properties", "Nodal Masses 9 FEM Properties",
            "Nodal Inertias 10 FEM Properties", "Element Faces 14 FEM Properties",
            "Interface Nodes 17 Ondrel Properties", "Invariants 1 19 list", "Invariants 2 20 list",
            "Invariants 3 21 list", "Invariants 4 22 list", "Invariants 5 23 list",
            "Invariants 7 24 list", "Invariants 8 25 list", "Invariants 9 26 list"};
        // clang-format on
        ZEBBrowser tab(nullptr, "ZEBBrowser");
        const auto* list = tab.findChild<QTreeWidget*>();
        QStringList seen;
        // Tool tips name the block number, not the key.
        for (const QCheckBox* box : tab.findChildren<QCheckBox*>())
            seen << box->text() + " " + QString(box->toolTip()).remove("Block #") + " " +
                        qobject_cast<QGroupBox*>(box->parent())->title();
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            seen << list->topLevelItem(i)->text(0) + " " +
                        QString::number(ZEBBrowser::blockNumber(ZEBBrowser::boxCount + i)) +
                        " list";
        QCOMPARE(seen, table);

        QCOMPARE(ticks(tab), (QStringList{"Version code", "Header", "Units", "Eigenvalues",
                                          "Global Body Properties", "Interface Nodes"}));
        widget<QAbstractButton>(&tab, "All")->click();
        QCOMPARE(ticks(tab).size(), 28);
        widget<QAbstractButton>(&tab, "Clear")->click();
        QCOMPARE(ticks(tab), QStringList());
    }

    // The page road, through the button, with the stand-in or a translator
    // script. A report counts only when this run wrote it and the tool exited
    // non-zero.
    void browse_data()
    {
        QTest::addColumn<QString>("input");     // in the examples, or "empty.zeb" with empty blocks
        QTest::addColumn<QString>("index");     // typed into the index field ("" leaves it)
        QTest::addColumn<QStringList>("names"); // ticked
        QTest::addColumn<QString>("how"); // "fail N": the stand-in cannot extract block N; "link":
                                          // the report is a link to a victim; "cancel" the
                                          // progress dialog; "#!...": the translator's script
        QTest::addColumn<QStringList>("pages"); // "name=text" of each page
        QTest::addColumn<QString>("message");   // caption of the one warning, if any

        const QString error = "This Block could not be parsed or is empty.\n";
        const QString write = "#!/bin/sh\necho new > \"$3\"\n";
        const QString tenLines =
            "#!/bin/sh\nfor i in 0 1 2 3 4 5 6 7 8 9; do echo \"block $5\"; done >\"$3\"\nexit 1\n";
        using L = QStringList;
        const auto modeShapes = [](const char* tag, const QString& how, const QString& page) {
            QTest::newRow(tag) << "beam.zeb"
                               << "" << L{"Mode Shapes"} << how << L{"Mode Shapes=" + page} << "";
        };
        // clang-format off
        QTest::newRow("leading lines of 11, 7, 16, 14, in key order") << "beam.zeb" << " 1 "
            << L{"Element Faces", "Units", "Mode Shape Transformation", "Eigenvalues"} << ""
            << L{"Units=" + sample(11), "Eigenvalues=" + sample(7),
                 "Mode Shape Transformation=" + sample(16), "Element Faces=" + sample(14)} << "";
        QTest::newRow("a failing block beside good ones") << "beam.zeb" << ""
            << L{"Header", "Units", "Invariants 9"} << "fail 11"
            << L{"Header=" + sample(2), "Units=" + error, "Invariants 9=" + sample(26)} << "";
        QTest::newRow("empty blocks") << "empty.zeb" << "" << L{"Version code", "Header"} << ""
            << L{"Version code=This block is empty.\n", "Header=  \n"} << "";
        QTest::newRow("database body") << "vehicle.MASTER" << "3" << L{"Units"} << ""
            << L{"Units=  Units of rear_subframe      nodes=1872 modes=18 units=mm\n"} << "";
        QTest::newRow("nothing ticked")     << "beam.zeb"       << ""   << L{}        << "" << L{} << "No blocks selected";
        QTest::newRow("index out of range") << "vehicle.MASTER" << "13" << L{"Units"} << "" << L{} << "Invalid Index";
        QTest::newRow("no such input")      << "missing.zeb"    << ""   << L{"Units"} << "" << L{} << "";
        modeShapes("link planted as report", "link", sample(8));
        modeShapes("cancel keeps lines up to the next thousand", "cancel", sample(8, 1000));
        modeShapes("exit 1, stale report", "#!/bin/sh\nexit 1\n", error);
        modeShapes("exit 0, written", write + "exit 0\n", error);
        modeShapes("killed, written", write + "kill -KILL $$\n", error);
        modeShapes("written through the user's link", tenLines + "# link", "block 8\n");
        // Each report rewritten in place, in the same second, to the same size.
        QTest::newRow("rewritten in place, whole seconds") << "beam.zeb" << "" << L{"Eigenvalues", "Mode Shapes"}
            << tenLines + "# coarse" << L{"Eigenvalues=block 7\nblock 7\n", "Mode Shapes=block 8\n"} << "";
        // clang-format on
    }

    void browse()
    {
        QFETCH(QString, input);
        QFETCH(QString, index);
        QFETCH(QStringList, names);
        QFETCH(QString, how);
        QFETCH(QStringList, pages);
        QFETCH(QString, message);
        ScratchDir dir;
        Standins standins(dir.path());
        const WholeSeconds coarse(how.endsWith("coarse") ? dir.path() : QString());
        if (how.endsWith("coarse") && !coarse.mounted)
            QSKIP("needs root to mount a file system of whole seconds");
        if (how.startsWith("fail "))
            qputenv("TAMSEL_STANDIN_FAIL_BLOCK", how.mid(5).toLatin1());
        QVERIFY(plant(dir, how.startsWith("#!") ? how : "", "beam.rpt", how.endsWith("link")));
        if (how == "cancel")
            ZEBReport::progressDialogMade = [](QProgressDialog& progress) {
                QCOMPARE(progress.labelText(), "Parsing Block 8");
                progress.cancel();
            };
        // Block 2 holds a line of two blanks between empty lines: only it shows. The
        // folder's name holds the "::" that the translator's operand adds.
        QVERIFY(QDir().mkdir("a::b"));
        dir.write("a::b/empty.zeb",
                  "ZEB 1.0  x\nblock 1  Version code\n\nblock 2  Header\n\n  \n\nend\n");
        const QString path = input == "empty.zeb" ? dir.filePath("a::b/" + input)
                                                  : Standins::examplesDir() + "/" + input;
        ZEBBrowser tab(nullptr, "ZEBBrowser");
        tab.findChild<QMFileLineEdit*>("inputFile")->setText(path);
        if (!index.isEmpty()) // the index field comes after the file field
            tab.findChildren<QLineEdit*>("inputFile").constLast()->setText(index);
        ticks(tab, &names);

        DialogAnswerer answers;
        if (!message.isEmpty())
            answers.pressButton("OK");
        // Posted now, they stand for keys pressed while the tool runs: no second browse.
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease})
            if (!pages.isEmpty())
                QCoreApplication::postEvent(widget<QAbstractButton>(&tab, "Start the GUI"),
                                            new QKeyEvent(type, Qt::Key_Space, {}));
        widget<QAbstractButton>(&tab, "Start the GUI Browser")->click();
        QCoreApplication::processEvents();
        VERIFY_DIALOGS(answers);
        QCOMPARE(answers.seen().isEmpty() ? "" : answers.seen().constFirst().title, message);
        // Never written through a link Tamsel did not make; the user's own is.
        QCOMPARE(dir.read("victim"),
                 how.endsWith("# link") ? QByteArray("block 8\n").repeated(10) : "keep");
        // An old report set aside for the run leaves no copy in the user's folder.
        QCOMPARE(QDir(dir.path()).entryList({".tamsel-*"}, QDir::Hidden | QDir::AllEntries),
                 QStringList());
        // Every page runs the tool once into the one report of the input.
        QCOMPARE(standins.runs().size(), how.startsWith("#!") ? 0 : pages.size());
        for (const Standins::Run& run : standins.runs())
            QCOMPARE(run.args.mid(0, 4),
                     (QStringList{path + "::" + (index.isEmpty() ? "1" : index.trimmed()), "-d",
                                  dir.filePath(QFileInfo(path).baseName() + ".rpt"), "-b"}));
        QList<QWidget*> windows = QApplication::topLevelWidgets();
        windows.removeIf([](const QWidget* w) { return w->objectName() != "browser"; });
        QCOMPARE(windows.size(), pages.isEmpty() ? 0 : 1);
        if (pages.isEmpty())
            return;
        std::unique_ptr<QWidget> window(windows.constFirst());
        QCOMPARE(window->windowTitle() + window->windowIconText(),
                 "Ondrel Tamsel ZEB BrowserBrowser");
        auto* tabs = window->findChild<QTabWidget*>("tabwidget");
        QStringList shown;
        for (int i = 0; i < tabs->count(); ++i)
            shown << tabs->tabText(i) + "=" +
                         tabs->widget(i)->findChild<BlockView*>()->toPlainText();
        QCOMPARE(shown, pages);
        QTest::mouseClick(widget(window.get(), "close_btn"), Qt::LeftButton);
        QTRY_VERIFY(!QApplication::topLevelWidgets().contains(window.get())); // closing deletes it
        window.release();
    }

    // A job shows that it runs: a busy cursor, and the block being made once
    // a run has taken a second. An assistive tool's press of any button
    // meanwhile (no input event) starts no second run and ticks nothing.
    void runShown_data()
    {
        QTest::addColumn<QString>("button");
        QTest::newRow("browse") << "Start the GUI Browser";
        QTest::newRow("report") << "Generate a report";
    }

    void runShown()
    {
        QFETCH(QString, button);
        ScratchDir dir;
        Standins standins(dir.path());
        Tamsel main;
        main.show();
        main.zebBrowser->findChild<QMFileLineEdit*>("inputFile")
            ->setText(Standins::examplesDir() + "/beam.zeb");
        const QStringList names{"Header", "Units"};
        ticks(*main.zebBrowser, &names);
        const QList<QAbstractButton*> buttons = main.findChildren<QAbstractButton*>();
        QStringList seen; // each run's progress text and cursor
        bool running = false;
        ZEBReport::runTool = [&](const std::string&) {
            if (running) {
                seen << "a second run";
                return 0;
            }
            const QScopedValueRollback<bool> inside(running, true);
            QProgressDialog* shown = nullptr;
            for (int i = 0; i < 500 && !(shown && shown->isVisible()); ++i) {
                platform::waitStep();
                shown = qobject_cast<QProgressDialog*>(QApplication::activeWindow());
            }
            const QCursor* cursor = QApplication::overrideCursor();
            seen << (shown ? shown->labelText() : "") +
                        (cursor && cursor->shape() == Qt::BusyCursor ? " busy" : "");
            for (QAbstractButton* b : buttons)
                QAccessible::queryAccessibleInterface(b)->actionInterface()->doAction(
                    QAccessibleActionInterface::pressAction());
            for (int i = 0; i < 10; ++i) // past the 100 ms of a pressed button's click
                platform::waitStep();
            return 1 << 8;
        };
        DialogAnswerer answers; // none is expected
        widget<QAbstractButton>(main.zebBrowser, button)->click();
        VERIFY_DIALOGS(answers);
        QCOMPARE(seen, (QStringList{"Block 1 of 2: Header busy", "Block 2 of 2: Units busy"}));
        QCOMPARE(ticks(*main.zebBrowser), names);
        QVERIFY(!QApplication::overrideCursor() && main.isEnabled() && main.isVisible());
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->objectName() == "browser" || qobject_cast<QMListDialog*>(w))
                delete w;
    }

    // The report road: one report of the whole file, or one a block, each
    // listed; with a translator that does not write what it was asked for.
    void reports_data()
    {
        QTest::addColumn<QString>("ticked"); // "all", "all but NAME", one block's name or none
        QTest::addColumn<QString>("how");    // "link" or "immutable" report, "deleted" directory,
                                             // "#!...": the translator's script
        QTest::addColumn<int>("runs");       // of the stand-in
        QTest::addColumn<QString>("listed"); // the list's first name, or the warning
        const QString b8 = "\n%D/beam_12111530_block8.rpt";
        // clang-format off
        QTest::newRow("all 28: the whole file") << "all"                  << ""          << 1  << "%D/beam_12111530.rpt";
        QTest::newRow("one list item unticked") << "all but Invariants 9" << ""          << 27 << "\n%D/beam_12111530_block1.rpt";
        QTest::newRow("one box unticked")       << "all but Version code" << ""          << 27 << "\n%D/beam_12111530_block2.rpt";
        QTest::newRow("nothing")                << ""                     << ""          << 0  << "";
        QTest::newRow("killed")                 << "Mode Shapes" << "#!/bin/sh\nkill -KILL $$\n" << 0 << b8 + " (not written: ended by signal 9, Killed)";
        QTest::newRow("immutable")              << "Mode Shapes"          << "immutable" << 1  << b8 + " (not written: Operation not permitted)";
        QTest::newRow("link planted as report") << "Mode Shapes"          << "link"      << 1  << b8;
        QTest::newRow("written, exit 0") << "Mode Shapes" << "#!/bin/sh\necho new >\"$3\"\n" << 0 << b8 + " (failed: the translator's exit code was 0)";
        // Rewritten in place, its date kept to the second: still this run's report.
        QTest::newRow("rewritten in place") << "Mode Shapes" << "#!/bin/sh\nt=$(stat -c %Y \"$3\")\necho new >> \"$3\"\ntouch -d @$t \"$3\"\nexit 1\n" << 0 << b8;
        QTest::newRow("working directory deleted") << "Mode Shapes" << "deleted" << 0
            << "Unable To Run: The working directory %D/gone no longer exists.\nNothing was run. [OK] OK/OK";
        // clang-format on
    }

    void reports()
    {
        QFETCH(QString, ticked);
        QFETCH(QString, how);
        QFETCH(int, runs);
        QFETCH(QString, listed);
        ScratchDir dir;
        Standins standins(dir.path());
        // Left so: no other test here reads the clock.
        ZEBReport::clock = [] { return QDateTime(QDate(2025, 12, 11), QTime(15, 30, 59)); };
        const QString report = "beam_12111530_block8.rpt";
        QVERIFY(plant(dir, how.startsWith("#!") ? how : "", report, how == "link"));
        if (how == "immutable" && QProcess::execute("chattr", {"+i", report}) != 0)
            QSKIP("needs chattr +i (root) for an immutable report");
        ZEBBrowser tab(nullptr, "ZEBBrowser");
        // The input lies elsewhere; its reports land in the working directory.
        const QString input = Standins::examplesDir() + "/beam.zeb";
        tab.findChild<QMFileLineEdit*>("inputFile")->setText(input);
        QStringList names;
        QList<int> blocks;
        for (int key = 0; key < ZEBBrowser::blockCount; ++key) {
            const QString name = ZEBBrowser::blockName(key);
            if (ticked == "all" || ticked == name ||
                (ticked.startsWith("all but ") && ticked.mid(8) != name)) {
                names << name;
                blocks << ZEBBrowser::blockNumber(key);
            }
        }
        std::sort(blocks.begin(), blocks.end()); // they run in block order
        ticks(tab, &names);
        DialogAnswerer answers;
        if (how == "deleted") {
            answers.pressButton("OK");
            QVERIFY(QDir().mkdir("gone") && QDir::setCurrent("gone") &&
                    QDir().rmdir(dir.filePath("gone")));
        }
        widget<QAbstractButton>(&tab, "Generate a report")->click();
        QDir::setCurrent(dir.path());
        QProcess::execute("chattr", {"-i", report});
        VERIFY_DIALOGS(answers);
        QString text = answers.boxes().value(0, "(no list)");
        for (QWidget* w : QApplication::topLevelWidgets()) // read, then closed
            if (const std::unique_ptr<QMListDialog> list{qobject_cast<QMListDialog*>(w)})
                text = list->findChild<QTextEdit*>()->toPlainText();
        // The whole file's name stands alone; block names each follow a line feed.
        QCOMPARE(text.section('\n', 0, 1), QString(listed).replace("%D", dir.path()));
        QCOMPARE(standins.runs().size(), runs);
        const QStringList lines = text.split('\n', Qt::SkipEmptyParts);
        for (int i = 0; i < runs; ++i) {
            const QString name = lines.value(i).section(" (", 0, 0);
            QCOMPARE(standins.runs().at(i).args,
                     QStringList({input + "::1", "-d", name}) +
                         (ticked == "all" ? QStringList()
                                          : QStringList{"-b", QString::number(blocks.value(i))}));
            QVERIFY(QFile::exists(name));
        }
        QCOMPARE(dir.read("victim"), QByteArray("keep")); // never written through a link
    }
};

QTEST_MAIN(TestZEBBrowser)
#include "test_zebbrowser.moc"
