// The browser tab: its blocks, ticks and both roads with the stand-in
// translator, the report names and the status rule, and the pages built
// from the reports.
#include "zebbrowser.h"

#include "app_qmfilelineedit.h"
#include "blockview.h"
#include "dialoganswerer.h"
#include "qmlistdialog.h"
#include "scratchdir.h"
#include "standins.h"
#include "zebreport.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include <QCheckBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>

#include "platform/commandline.h"

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
    const auto* list = tab.findChild<QTreeWidget*>();
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = list->topLevelItem(i);
        if (names)
            item->setCheckState(0, names->contains(item->text(0)) ? Qt::Checked : Qt::Unchecked);
        if (item->checkState(0) == Qt::Checked)
            ticked << item->text(0);
    }
    return ticked;
}

// The data lines of a block in a stand-in ZEB file, as a page shows them.
QString sampleBlock(const QString& file, int block)
{
    QFile f(file);
    f.open(QIODevice::ReadOnly);
    QString text;
    bool inBlock = false;
    for (const QByteArray& line : f.readAll().split('\n')) {
        if (line.startsWith("block ") || line == "end")
            inBlock = line.startsWith("block " + QByteArray::number(block) + " ");
        else if (inBlock && !line.isEmpty())
            text += QString::fromUtf8(line) + "\n";
    }
    return text;
}

QMFileLineEdit* fileField(ZEBBrowser& tab)
{
    return tab.findChild<QMFileLineEdit*>("inputFile");
}

QLineEdit* indexField(ZEBBrowser& tab)
{
    for (auto* edit : tab.findChildren<QLineEdit*>("inputFile"))
        if (!qobject_cast<QMFileLineEdit*>(edit))
            return edit;
    return nullptr;
}

// A push button by its text or the start of its tool tip.
QPushButton* button(QWidget& parent, const QString& key)
{
    for (auto* b : parent.findChildren<QPushButton*>())
        if (b->text() == key || (!b->toolTip().isEmpty() && b->toolTip().startsWith(key)))
            return b;
    return nullptr;
}

// Puts the report's clock, runner and progress hook back after a test.
struct ReportHooks {
    ~ReportHooks()
    {
        ZEBReport::clock = [] { return QDateTime::currentDateTime(); };
        ZEBReport::runTool = platform::runCommandLine;
        ZEBReport::progressDialogMade = nullptr;
    }
};

QList<QWidget*> browserWindows()
{
    QList<QWidget*> windows;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == "browser")
            windows << w;
    return windows;
}

} // namespace

class TestZEBBrowser : public QObject
{
    Q_OBJECT

private slots:
    void blocksAndTicks();
    void browse_data();
    void browse();
    void reports_data();
    void reports();
    void statusRule_data();
    void statusRule();
    void cancelKeepsLinesRead();
};

void TestZEBBrowser::blocksAndTicks()
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
    const auto boxes = tab.findChildren<QCheckBox*>();
    const auto* list = tab.findChild<QTreeWidget*>();
    QStringList seen;
    for (int key = 0; key < ZEBBrowser::blockCount; ++key) {
        const QString number = QString::number(ZEBBrowser::blockNumber(key));
        QString name = ZEBBrowser::blockName(key);
        if (key < ZEBBrowser::boxCount) {
            // Tool tips name the block number, not the key.
            QCOMPARE(boxes[key]->toolTip(), "Block #" + number);
            QCOMPARE(boxes[key]->text(), name);
            seen << name + " " + number + " " +
                        qobject_cast<QGroupBox*>(boxes[key]->parent())->title();
        } else {
            QCOMPARE(list->topLevelItem(key - ZEBBrowser::boxCount)->text(0), name);
            seen << name + " " + number + " list";
        }
    }
    QCOMPARE(seen, table);
    QCOMPARE(list->toolTip() + QString::number(list->isHeaderHidden()), "Blocks #19 - 261");

    QCOMPARE(ticks(tab), (QStringList{"Version code", "Header", "Units", "Eigenvalues",
                                      "Global Body Properties", "Interface Nodes"}));
    button(tab, "All")->click();
    QCOMPARE(ticks(tab).size(), 28);
    button(tab, "Clear")->click();
    QCOMPARE(ticks(tab), QStringList());
}

void TestZEBBrowser::browse_data()
{
    QTest::addColumn<QString>("input");     // "beam": the sample; "empty": a file with empty blocks
    QTest::addColumn<QString>("index");     // typed into the index field ("" leaves it)
    QTest::addColumn<QStringList>("names"); // ticked
    QTest::addColumn<int>("failBlock");     // the stand-in cannot extract this one
    QTest::addColumn<QStringList>("pages"); // "name=block": the sample's data; "name=text"
    QTest::addColumn<QString>("message");   // caption of the one warning, if any

    const QString error = "This Block could not be parsed or is empty.\n";
    using L = QStringList;
    // clang-format off
    QTest::newRow("leading lines of 11, 7, 16, 14, in key order") << "beam" << ""
        << L{"Element Faces", "Units", "Mode Shape Transformation", "Eigenvalues"} << 0
        << L{"Units=11", "Eigenvalues=7", "Mode Shape Transformation=16", "Element Faces=14"} << "";
    QTest::newRow("a failing block beside good ones") << "beam" << ""
        << L{"Header", "Units", "Invariants 9"} << 11
        << L{"Header=2", "Units=" + error, "Invariants 9=26"} << "";
    QTest::newRow("empty blocks") << "empty" << "" << L{"Version code", "Header"} << 0
        << L{"Version code=This block is empty.\n", "Header=  \n"} << "";
    QTest::newRow("database body") << "vehicle.MASTER" << "3" << L{"Units"} << 0
        << L{"Units=  Units of rear_subframe      nodes=1872 modes=18 units=mm\n"} << "";
    QTest::newRow("nothing ticked") << "beam" << "" << L{} << 0 << L{} << "No blocks selected";
    QTest::newRow("index out of range") << "vehicle.MASTER" << "13" << L{"Units"} << 0 << L{}
                                        << "Invalid Index";
    QTest::newRow("no such input") << "missing" << "" << L{"Units"} << 0 << L{} << "";
    // clang-format on
}

void TestZEBBrowser::browse()
{
    QFETCH(QString, input);
    QFETCH(QString, index);
    QFETCH(QStringList, names);
    QFETCH(int, failBlock);
    QFETCH(QStringList, pages);
    QFETCH(QString, message);
    ScratchDir dir;
    Standins standins(dir.path());
    if (failBlock)
        qputenv("TAMSEL_STANDIN_FAIL_BLOCK", QByteArray::number(failBlock));
    // Block 2 holds a line of two blanks between empty lines: only it shows.
    dir.write("empty.zeb", "ZEB 1.0  x\nblock 1  Version code\n\nblock 2  Header\n\n  \n\nend\n");
    const QString path = input == "beam"            ? Standins::examplesDir() + "/beam.zeb"
                         : input.endsWith("MASTER") ? Standins::examplesDir() + "/" + input
                                                    : dir.filePath(input + ".zeb");
    ZEBBrowser tab(nullptr, "ZEBBrowser");
    fileField(tab)->setText(path);
    if (!index.isEmpty())
        indexField(tab)->setText(index);
    ticks(tab, &names);

    DialogAnswerer answers;
    if (!message.isEmpty())
        answers.pressButton("OK");
    // Posted now, they stand for keys pressed while the tool runs: no second browse.
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease})
        if (!pages.isEmpty())
            QCoreApplication::postEvent(button(tab, "Start the GUI"),
                                        new QKeyEvent(type, Qt::Key_Space, {}));
    button(tab, "Start the GUI Browser")->click();
    QCoreApplication::processEvents();
    VERIFY_DIALOGS(answers);
    QCOMPARE(answers.seen().isEmpty() ? "" : answers.seen().constFirst().title, message);
    const QList<QWidget*> windows = browserWindows();
    QCOMPARE(windows.size(), pages.isEmpty() ? 0 : 1);
    QCOMPARE(standins.runs().size(), pages.size());
    if (pages.isEmpty())
        return;
    std::unique_ptr<QWidget> window(windows.constFirst());
    QCOMPARE(window->windowTitle() + window->windowIconText(), "Ondrel Tamsel ZEB BrowserBrowser");
    QCOMPARE(window->size(), QSize(600, 300));
    auto* tabs = window->findChild<QTabWidget*>("tabwidget");
    QCOMPARE(tabs->count(), pages.size());
    for (int i = 0; i < pages.size(); ++i) {
        const QString name = pages[i].section('=', 0, 0);
        QString text = pages[i].section('=', 1);
        bool isNumber = false;
        const int block = text.toInt(&isNumber);
        if (isNumber)
            text = sampleBlock(path, block);
        QCOMPARE(tabs->tabText(i), name);
        const auto* view = tabs->widget(i)->findChild<BlockView*>();
        QCOMPARE(view->toPlainText(), text);
        // Every page runs the tool once into the one report of the input.
        const Standins::Run run = standins.runs().at(i);
        QCOMPARE(run.args.mid(1, 3),
                 (QStringList{"-d", dir.filePath(QFileInfo(path).baseName() + ".rpt"), "-b"}));
        QCOMPARE(run.args.constFirst(), path + "::" + (index.isEmpty() ? "1" : index));
    }
    QCOMPARE(window->findChild<QPushButton*>("close_btn")->text(), "Close");
    QTest::mouseClick(window->findChild<QPushButton*>("close_btn"), Qt::LeftButton);
    QTRY_COMPARE(browserWindows().size(), 0); // closing deletes the window
    window.release();
}

void TestZEBBrowser::reports_data()
{
    QTest::addColumn<int>("unticked"); // key left unticked; -1: none, 28: all
    QTest::addColumn<int>("runs");
    QTest::addColumn<QString>("firstName"); // the first name listed, behind the directory
    QTest::newRow("all 28: the whole file") << -1 << 1 << "beam_12111530.rpt";
    QTest::newRow("one list item unticked") << 27 << 27 << "beam_12111530_block1.rpt";
    QTest::newRow("one box unticked") << 0 << 27 << "beam_12111530_block2.rpt";
    QTest::newRow("nothing") << 28 << 0 << "";
}

void TestZEBBrowser::reports()
{
    QFETCH(int, unticked);
    QFETCH(int, runs);
    QFETCH(QString, firstName);
    ScratchDir dir;
    Standins standins(dir.path());
    const ReportHooks hooks;
    ZEBReport::clock = [] { return QDateTime(QDate(2025, 12, 11), QTime(15, 30, 59)); };
    ZEBBrowser tab(nullptr, "ZEBBrowser");
    // The input lies elsewhere; its reports land in the working directory.
    fileField(tab)->setText(Standins::examplesDir() + "/beam.zeb");
    QStringList ticked;
    for (int key = 0; key < ZEBBrowser::blockCount; ++key)
        if (key != unticked && unticked != 28)
            ticked << ZEBBrowser::blockName(key);
    ticks(tab, &ticked);
    button(tab, "Generate a report")->click();

    QMListDialog* list = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets())
        list = qobject_cast<QMListDialog*>(w) ? qobject_cast<QMListDialog*>(w) : list;
    QVERIFY(list && list->isVisible());
    const std::unique_ptr<QMListDialog> owned(list);
    const QString text = list->findChild<QTextEdit*>()->toPlainText();
    QCOMPARE(standins.runs().size(), runs);
    const QStringList names = text.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(names.size(), runs);
    // The whole file's name stands alone; block names each follow a line feed.
    QCOMPARE(text.startsWith('\n'), runs > 1);
    QCOMPARE(names.value(0), firstName.isEmpty() ? "" : dir.filePath(firstName));
    QList<int> blocks;
    for (int i = 0; i < runs; ++i) {
        const QStringList args = standins.runs().at(i).args;
        blocks << args.value(4).toInt();
        QCOMPARE(args.mid(0, 3),
                 (QStringList{Standins::examplesDir() + "/beam.zeb::1", "-d", names[i]}));
        QCOMPARE(args.size(), runs == 1 ? 3 : 5);
        QVERIFY(QFile::exists(names[i]));
    }
    if (runs == 27) {
        QVERIFY(std::is_sorted(blocks.begin(), blocks.end()));
        QVERIFY(!blocks.contains(ZEBBrowser::blockNumber(unticked)) && !blocks.contains(5));
    }
}

void TestZEBBrowser::statusRule_data()
{
    QTest::addColumn<int>("status"); // the wait status the tool ends with
    QTest::addColumn<bool>("file");  // whether it writes the report
    QTest::addColumn<bool>("counts");
    QTest::newRow("exit 1, file") << (1 << 8) << true << true;
    QTest::newRow("exit 0, file") << 0 << true << false;
    QTest::newRow("low 16 bits zero") << 0x10000 << true << false;
    QTest::newRow("killed, file") << 9 << true << false;
    QTest::newRow("exit 1, no file") << (1 << 8) << false << false;
}

void TestZEBBrowser::statusRule()
{
    QFETCH(int, status);
    QFETCH(bool, file);
    QFETCH(bool, counts);
    ScratchDir dir;
    Standins standins(dir.path());
    QStringList commands;
    const ReportHooks hooks;
    ZEBReport::runTool = [&](const std::string& command) {
        commands << QString::fromStdString(command);
        if (file) // a new file over the one from before
            std::rename(qPrintable(dir.filePath("r.rpt~")), qPrintable(dir.filePath("r.rpt")));
        return status;
    };
    ZEBReport report(Standins::examplesDir() + "/beam.zeb", " 2 ");
    QVERIFY(report.valid);
    report.reportFile = dir.filePath("r.rpt");
    dir.write("r.rpt~", "x");
    dir.write("r.rpt", "from before");
    QCOMPARE(report.run(7), counts);
    QCOMPARE(report.run(30), false); // no block 30: nothing runs
    QCOMPARE(commands,
             QStringList{Standins::program("zeb2mtx-standin") + " \"" + Standins::examplesDir() +
                         "/beam.zeb::2\" -d \"" + dir.filePath("r.rpt") + "\" -b 7 "});
}

// Cancel keeps what was read up to the next thousand lines.
void TestZEBBrowser::cancelKeepsLinesRead()
{
    ScratchDir dir;
    Standins standins(dir.path());
    const ReportHooks hooks;
    ZEBReport::progressDialogMade = [](QProgressDialog& progress) {
        QCOMPARE(progress.labelText(), "Parsing Block 8");
        progress.cancel();
    };
    ZEBReport report(Standins::examplesDir() + "/beam.zeb", "1");
    QWidget page;
    QVERIFY(report.showBlock(&page, 8));
    QCOMPARE(page.findChild<BlockView*>("text viewer")->blockText().lineCount(), 1000);
}

QTEST_MAIN(TestZEBBrowser)
#include "test_zebbrowser.moc"
