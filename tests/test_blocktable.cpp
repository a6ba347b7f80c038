// A block page's table and its switch: how lines are cut into the columns
// of every block layout, headers, numeric sorting through the header, copy
// and CSV export, and the switch driven by keys and read by assistive
// technology, on real pages the browser makes.
#include "blockpage.h"
#include "blocktablemodel.h"
#include "blocktableview.h"
#include "blockview.h"
#include "dialoganswerer.h"
#include "readonlydir.h"
#include "scratchdir.h"
#include "standins.h"
#include "zebreport.h"

#include <QAccessible>
#include <QClipboard>
#include <QHeaderView>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTest>

namespace
{

// Cells right-aligned in the widths of a layout.
QString lineOf(const BlockLayout& layout, const QStringList& cells)
{
    QString line;
    for (int c = 0; c < cells.size(); ++c)
        line += cells[c].rightJustified(layout.columnWidths[c]);
    return line;
}

QStringList rowOf(const BlockTableModel& model, int row)
{
    QStringList cells;
    for (int c = 0; c < model.columnCount(); ++c)
        cells << model.index(row, c).data().toString();
    return cells;
}

// A layout of two columns, 5 and 18 wide, like Nodal Masses.
const BlockLayout& twoColumns()
{
    return blockLayouts[8];
}

struct Table {
    BlockText text;
    BlockTableView view;
    Table(const QStringList& lines, const BlockLayout& layout)
        : text(BlockText::fromString(lines.join('\n'))), view(text, layout)
    {
        view.resize(500, 300);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
    }
    BlockTableModel& model() { return *view.tableModel(); }
    void clickHeader(int column)
    {
        QHeaderView* header = view.horizontalHeader();
        const QPoint at(header->sectionViewportPosition(column) + 5, header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
    }
};

} // namespace

class TestBlockTable : public QObject
{
    Q_OBJECT

private slots:
    void columnsOfEveryLayout_data();
    void columnsOfEveryLayout();
    void headers_data();
    void headers();
    void numericSort_data();
    void numericSort();
    void copySelection_data();
    void copySelection();
    void rowsOnDemand();
    void csvQuoting_data();
    void csvQuoting();
    void exportCsv();
    void pagesOfTheBrowser_data();
    void pagesOfTheBrowser();
    void switchByKeys();
};

void TestBlockTable::columnsOfEveryLayout_data()
{
    QTest::addColumn<int>("block");
    for (int block = 1; block <= blockLayoutCount; ++block)
        if (blockLayouts[block - 1].columnCount >= 2)
            QTest::addRow("block %d", block) << block;
}

// Every cell comes back from its place, a line that is not data stands whole
// in the first column, marked, and wide letters count as one character.
void TestBlockTable::columnsOfEveryLayout()
{
    QFETCH(int, block);
    const BlockLayout& layout = blockLayouts[block - 1];
    QStringList cells, wide;
    for (int c = 0; c < layout.columnCount; ++c) {
        cells << QString("%1").arg(c + 1) + QString(layout.columnWidths[c] > 4 ? "e-3" : "");
        wide << QString("\u00fc%1").arg(c);
    }
    int start = 0; // where the last column starts
    for (int c = 0; c + 1 < layout.columnCount; ++c)
        start += layout.columnWidths[c];
    const QString heading = "  Mode 3";
    const QString tooShort = QString(start, ' ');
    const QString tooLong = lineOf(layout, cells) + "x";
    Table table({lineOf(layout, cells), heading, tooShort, tooLong, lineOf(layout, wide)}, layout);
    QCOMPARE(table.model().columnCount(), layout.columnCount);
    QCOMPARE(rowOf(table.model(), 0), cells);
    QCOMPARE(rowOf(table.model(), 4), wide);
    for (int row : {1, 2, 3}) {
        const QModelIndex first = table.model().index(row, 0);
        QCOMPARE(first.data().toString(), table.text.line(row));
        QCOMPARE(first.data(Qt::ToolTipRole).toString(), "Not a data line: shown whole");
        QVERIFY(first.data(Qt::FontRole).value<QFont>().italic());
        QCOMPARE(rowOf(table.model(), row).mid(1).join(""), "");
    }
    QVERIFY(!table.model().index(0, 0).data(Qt::ToolTipRole).isValid());
    const auto alignment = table.model().index(0, 1).data(Qt::TextAlignmentRole).toInt();
    QVERIFY(alignment & Qt::AlignRight);
}

void TestBlockTable::headers_data()
{
    QTest::addColumn<int>("block");
    QTest::addColumn<QStringList>("titles");
    QTest::newRow("Eigenvalues") << 7 << QStringList{"Mode",    "Eigenvalue", "Hertz",
                                                     "Radians", "Gen. Mass",  "Gen. Stiff"};
    QTest::newRow("Stress Modes") << 18 << QStringList{"ID",     "Sigma X", "Sigma Y", "Sigma Z",
                                                       "Tau XY", "Tau XZ",  "Tau YZ"};
    QTest::newRow("no titles") << 3 << QStringList{"Column 1", "Column 2", "Column 3"};
}

void TestBlockTable::headers()
{
    QFETCH(int, block);
    QFETCH(QStringList, titles);
    Table table({}, blockLayouts[block - 1]);
    QStringList shown;
    for (int c = 0; c < table.model().columnCount(); ++c)
        shown << table.model().headerData(c, Qt::Horizontal).toString();
    QCOMPARE(shown, titles);
}

void TestBlockTable::numericSort_data()
{
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<int>("clicks");
    QTest::addColumn<QStringList>("order");
    const QStringList numbers{"1.0E+00", "-1.2E-03", "+3", "-5", "2.5D+01", "1e-10", "0.0"};
    QTest::newRow("ascending") << numbers << 1
                               << QStringList{"-5",      "-1.2E-03", "0.0",    "1e-10",
                                              "1.0E+00", "+3",       "2.5D+01"};
    QTest::newRow("descending") << numbers << 2
                                << QStringList{"2.5D+01", "+3",       "1.0E+00", "1e-10",
                                               "0.0",     "-1.2E-03", "-5"};
    QTest::newRow("text where a cell is no number")
        << QStringList{"b10", "a2", "10", "9"} << 1 << QStringList{"10", "9", "a2", "b10"};
}

// A click on the title sorts, a second turns the order round; the heading
// that is no data stays last, and each row keeps its line's number.
void TestBlockTable::numericSort()
{
    QFETCH(QStringList, values);
    QFETCH(int, clicks);
    QFETCH(QStringList, order);
    QStringList lines;
    for (const QString& value : values)
        lines << lineOf(twoColumns(), {"1", value});
    lines.insert(2, "heading");
    Table table(lines, twoColumns());
    for (int i = 0; i < clicks; ++i)
        table.clickHeader(1);
    QStringList sorted;
    for (int row = 0; row < order.size(); ++row) {
        sorted << table.model().index(row, 1).data().toString();
        const int line = table.model().headerData(row, Qt::Vertical).toInt();
        QCOMPARE(table.text.line(line - 1).trimmed().mid(1).trimmed(), sorted.last());
    }
    QCOMPARE(sorted, order);
    QCOMPARE(table.model().index(values.size(), 0).data().toString(), "heading");
}

void TestBlockTable::copySelection_data()
{
    QTest::addColumn<QList<QRect>>("ranges"); // x: column, y: row
    QTest::addColumn<QString>("copied");
    QTest::newRow("one cell") << QList<QRect>{{1, 1, 1, 1}} << "b2\n";
    QTest::newRow("block") << QList<QRect>{{0, 0, 2, 2}} << "a1\tb1\na2\tb2\n";
    QTest::newRow("ragged, gaps empty")
        << QList<QRect>{{0, 0, 1, 1}, {1, 2, 1, 1}} << "a1\t\n\tb3\n";
    QTest::newRow("heading whole") << QList<QRect>{{0, 3, 2, 1}} << "no data here\t\n";
}

// Ctrl+C on the view gives the cells as tab-separated text.
void TestBlockTable::copySelection()
{
    QFETCH(QList<QRect>, ranges);
    QFETCH(QString, copied);
    const BlockLayout& layout = twoColumns();
    Table table({lineOf(layout, {"a1", "b1"}), lineOf(layout, {"a2", "b2"}),
                 lineOf(layout, {"a3", "b3"}), "no data here"},
                layout);
    for (const QRect& r : ranges)
        table.view.selectionModel()->select(
            QItemSelection(table.model().index(r.top(), r.left()),
                           table.model().index(r.bottom(), r.right())),
            QItemSelectionModel::Select);
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(&table.view, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), copied);
}

// A long table makes its rows known as the view scrolls, yet sorting,
// select all and copy take every row.
void TestBlockTable::rowsOnDemand()
{
    const int total = BlockTableModel::fetchStep * 2 + 5;
    QStringList lines;
    for (int i = 1; i <= total; ++i)
        lines << lineOf(twoColumns(), {QString::number(i), QString::number(i % 7)});
    Table table(lines, twoColumns());
    QCOMPARE(table.model().rowCount(), BlockTableModel::fetchStep);
    table.view.scrollToBottom();
    QTRY_VERIFY(table.model().rowCount() > BlockTableModel::fetchStep);
    table.model().sort(0, Qt::DescendingOrder);
    QCOMPARE(table.model().index(0, 0).data().toString(), QString::number(total));
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(&table.view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&table.view, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text().count('\n'), total);
}

void TestBlockTable::csvQuoting_data()
{
    QTest::addColumn<QString>("cell");
    QTest::addColumn<QString>("field");
    QTest::newRow("plain") << "1.5E+00"
                           << "1.5E+00";
    QTest::newRow("comma") << "a,b"
                           << "\"a,b\"";
    QTest::newRow("quote") << "say \"hi\""
                           << "\"say \"\"hi\"\"\"";
    QTest::newRow("line end") << "two\r\nlines"
                              << "\"two\r\nlines\"";
    QTest::newRow("carriage return") << "a\rb"
                                     << "\"a\rb\"";
}

void TestBlockTable::csvQuoting()
{
    QFETCH(QString, cell);
    QFETCH(QString, field);
    QCOMPARE(BlockTableModel::csvField(cell), field);
}

// "Export CSV…" writes titles and rows through the file dialog, replaces a
// planted link rather than writing through it, and says why it failed.
void TestBlockTable::exportCsv()
{
    ScratchDir dir;
    const BlockLayout& layout = blockLayouts[2]; // Content Summary: 25, 6, 10
    BlockText text = BlockText::fromString(QString("nodes, all").leftJustified(25) + "   251" +
                                           QString(10, ' ') + "\na \"heading\"");
    auto* view = new BlockView;
    view->setBlockText(std::move(text));
    BlockPage page(view, layout, {});
    page.showView(BlockPage::Table);
    DialogAnswerer answers;
    answers.chooseFile(dir.filePath("out.csv"));
    page.findChild<QPushButton*>("export csv")->click();
    QVERIFY(answers.unexpected().isEmpty());
    QCOMPARE(dir.read("out.csv"), "Column 1,Column 2,Column 3\r\n"
                                  "\"nodes, all\",251,\r\n"
                                  "\"a \"\"heading\"\"\",,\r\n");
    QVERIFY(dir.write("victim", "keep"));
    QVERIFY(QFile::link(dir.filePath("victim"), dir.filePath("link.csv")));
    QString error;
    QVERIFY(page.tableView()->exportCsv(dir.filePath("link.csv"), error));
    QVERIFY(!QFileInfo(dir.filePath("link.csv")).isSymLink());
    QCOMPARE(dir.read("victim"), "keep");

    ReadOnlyDir locked;
    QVERIFY(locked.isValid());
    QVERIFY(!page.tableView()->exportCsv(locked.path() + "/out.csv", error));
    QVERIFY2(!error.isEmpty(), "no reason given");
}

void TestBlockTable::pagesOfTheBrowser_data()
{
    QTest::addColumn<int>("block");
    QTest::addColumn<int>("failBlock");
    QTest::addColumn<bool>("switchable");
    QTest::addColumn<QString>("viewName");
    // Block 0: Mode Shapes of a file where that block holds no data.
    QTest::newRow("Mode Shapes") << 8 << 0 << true << "text viewer";
    QTest::newRow("Eigenvalues") << 7 << 0 << true << "text viewer";
    QTest::newRow("Version code, one column") << 1 << 0 << false << "text viewer";
    QTest::newRow("Units, one column") << 11 << 0 << false << "text viewer";
    QTest::newRow("Invariants 1, one column") << 19 << 0 << false << "text viewer";
    QTest::newRow("error page") << 8 << 8 << false << "error parsing block message";
    QTest::newRow("empty page") << 0 << 0 << false << "text viewer";
}

// Blocks with columns get the switch with the text first; error, empty and
// one-column pages are text alone, as they always were.
void TestBlockTable::pagesOfTheBrowser()
{
    QFETCH(int, block);
    QFETCH(int, failBlock);
    QFETCH(bool, switchable);
    QFETCH(QString, viewName);
    ScratchDir dir;
    Standins standins(dir.path());
    if (failBlock)
        qputenv("TAMSEL_STANDIN_FAIL_BLOCK", QByteArray::number(failBlock));
    QString input = Standins::examplesDir() + "/beam.zeb";
    if (block == 0) {
        QVERIFY(dir.write("empty.zeb", "ZEB 1.0 no data\nblock 8  Mode Shapes\nend\n"));
        input = dir.filePath("empty.zeb");
    }
    ZEBReport report(input, "");
    QWidget tab;
    QVERIFY(report.showBlock(&tab, block ? block : 8));
    qunsetenv("TAMSEL_STANDIN_FAIL_BLOCK");
    auto* view = tab.findChild<BlockView*>(viewName);
    QVERIFY(view);
    auto* page = tab.findChild<BlockPage*>();
    QCOMPARE(page != nullptr, switchable);
    if (page) {
        QCOMPARE(page->currentView(), BlockPage::Text);
        QCOMPARE(page->textView(), view);
        page->showView(BlockPage::Table);
        QCOMPARE(page->tableView()->model()->rowCount(), view->blockText().lineCount());
    }
}

// Tab reaches the switch, arrows and Alt letters move along it, each page
// keeps its own view, and every button has a name to be read out.
void TestBlockTable::switchByKeys()
{
    const BlockLayout& layout = blockLayouts[7];
    const QString line = lineOf(layout, {"1", "0", "1", "2", "0", "0", "0"});
    // Two pages in tabs, as in a browser window.
    QTabWidget window;
    BlockPage* pages[2];
    for (BlockPage*& page : pages) {
        auto* view = new BlockView;
        view->setBlockText(BlockText::fromString(line));
        page = new BlockPage(view, layout, {});
        window.addTab(page, "page");
    }
    window.resize(600, 400);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QStringList names;
    for (auto view : {BlockPage::Text, BlockPage::Table, BlockPage::Plot})
        names << QAccessible::queryAccessibleInterface(pages[0]->switchButton(view))
                     ->text(QAccessible::Name);
    QCOMPARE(names, (QStringList{"Show as text", "Show as table", "Show as plot"}));

    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    pages[0]->switchButton(BlockPage::Text)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QCOMPARE(pages[0]->currentView(), BlockPage::Table);
    QCOMPARE(QApplication::focusWidget(), pages[0]->switchButton(BlockPage::Table));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_P, Qt::AltModifier);
    QTRY_COMPARE(pages[0]->currentView(), BlockPage::Plot); // an animated click
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(pages[0]->currentView(), BlockPage::Table);
    QCOMPARE(pages[0]->findChild<QStackedWidget*>()->currentWidget(), pages[0]->tableView());
    QCOMPARE(pages[1]->currentView(), BlockPage::Text);
    QVERIFY(!pages[1]->tableView());
}

QTEST_MAIN(TestBlockTable)
#include "test_blocktable.moc"
