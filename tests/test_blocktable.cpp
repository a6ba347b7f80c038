// A block page's table and its switch: how lines are cut into the columns
// of every block layout, headers, numeric sorting through the header, copy
// and CSV export, and the switch driven by keys and read by assistive
// technology. Which pages of the browser get the switch is held in the
// plot's test, with what they plot.
#include "blockpage.h"
#include "blocktablemodel.h"
#include "blocktableview.h"
#include "blockview.h"
#include "dialoganswerer.h"
#include "readonlydir.h"
#include "scratchdir.h"

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

// A layout of two columns, 5 and 18 wide, like Nodal Masses.
const BlockLayout& twoColumns = blockLayouts[8];

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
    BlockTableModel& model = *view.tableModel();
    // The cells of a row; row -1 gives the column titles.
    QStringList row(int r)
    {
        QStringList cells;
        for (int c = 0; c < model.columnCount(); ++c)
            cells << (r < 0 ? model.headerData(c, Qt::Horizontal) : model.index(r, c).data())
                         .toString();
        return cells;
    }
};

} // namespace

class TestBlockTable : public QObject
{
    Q_OBJECT

private slots:
    void columnsOfEveryLayout_data()
    {
        QTest::addColumn<int>("block");
        for (int block = 1; block <= blockLayoutCount; ++block)
            if (blockLayouts[block - 1].columnCount >= 2)
                QTest::addRow("block %d", block) << block;
    }

    // Every cell comes back from its place under its title (or "Column n"), a
    // wide letter counting as one character; a line that is not data stands
    // whole in the first column, marked.
    void columnsOfEveryLayout()
    {
        QFETCH(int, block);
        const BlockLayout& layout = blockLayouts[block - 1];
        QStringList cells, titles;
        for (int c = 0; c < layout.columnCount; ++c) {
            cells << QString(c ? "%1e-3" : "\u00fc%1").arg(c + 1); // every column is 5 or wider
            const char* title = layout.columnTitles[c];
            titles << (title ? QString(title) : QString("Column %1").arg(c + 1));
        }
        const QString data = lineOf(layout, cells);
        // Blank up to where the last column starts.
        const QString tooShort(data.size() - layout.columnWidths[layout.columnCount - 1], ' ');
        Table table({data, "  Mode 3", tooShort, data + "x"}, layout);
        QCOMPARE(table.row(-1), titles);
        QCOMPARE(table.row(0), cells);
        for (int row : {1, 2, 3}) {
            const QModelIndex first = table.model.index(row, 0);
            QCOMPARE(first.data().toString(), table.text.line(row));
            QCOMPARE(first.data(Qt::ToolTipRole).toString(), "Not a data line: shown whole");
            QVERIFY(first.data(Qt::FontRole).value<QFont>().italic());
            QCOMPARE(table.row(row).mid(1).join(""), "");
        }
        QVERIFY(!table.model.index(0, 0).data(Qt::ToolTipRole).isValid());
        QVERIFY(table.model.index(0, 1).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
    }

    void numericSort_data()
    {
        QTest::addColumn<QString>("values"); // blank-separated, top down
        QTest::addColumn<int>("clicks");
        QTest::addColumn<QString>("order");
        const QString numbers = "1.0E+00 -1.2E-03 +3 -5 2.5D+01 1e-10 0.0";
        // clang-format off
        QTest::newRow("ascending")  << numbers << 1 << "-5 -1.2E-03 0.0 1e-10 1.0E+00 +3 2.5D+01";
        QTest::newRow("descending") << numbers << 2 << "2.5D+01 +3 1.0E+00 1e-10 0.0 -1.2E-03 -5";
        QTest::newRow("text where a cell is no number") << "b10 a2 10 9" << 1 << "10 9 a2 b10";
        // clang-format on
    }

    // A click on the title sorts, a second turns the order round; the heading
    // that is no data stays last, and each row keeps its line's number.
    void numericSort()
    {
        QFETCH(QString, values);
        QFETCH(int, clicks);
        QFETCH(QString, order);
        QStringList lines;
        for (const QString& value : values.split(' '))
            lines << lineOf(twoColumns, {"1", value});
        lines.insert(2, "heading");
        Table table(lines, twoColumns);
        QHeaderView* header = table.view.horizontalHeader();
        const QPoint title(header->sectionViewportPosition(1) + 5, header->height() / 2);
        for (int i = 0; i < clicks; ++i)
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, title);
        QStringList sorted;
        for (int row = 0; row + 1 < lines.size(); ++row) {
            sorted << table.row(row)[1];
            const int line = table.model.headerData(row, Qt::Vertical).toInt();
            QCOMPARE(table.text.line(line - 1).trimmed().mid(1).trimmed(), sorted.last());
        }
        QCOMPARE(sorted.join(' '), order);
        QCOMPARE(table.row(lines.size() - 1)[0], "heading");
    }

    void copySelection_data()
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
    void copySelection()
    {
        QFETCH(QList<QRect>, ranges);
        QFETCH(QString, copied);
        Table table({lineOf(twoColumns, {"a1", "b1"}), lineOf(twoColumns, {"a2", "b2"}),
                     lineOf(twoColumns, {"a3", "b3"}), "no data here"},
                    twoColumns);
        for (const QRect& r : ranges)
            table.view.selectionModel()->select(
                QItemSelection(table.model.index(r.top(), r.left()),
                               table.model.index(r.bottom(), r.right())),
                QItemSelectionModel::Select);
        QGuiApplication::clipboard()->clear();
        QTest::keyClick(&table.view, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), copied);
    }

    // A long table makes its rows known as the view scrolls, yet sorting,
    // select all and copy take every row.
    void rowsOnDemand()
    {
        const int total = BlockTableModel::fetchStep * 2 + 5;
        QStringList lines;
        for (int i = 1; i <= total; ++i)
            lines << lineOf(twoColumns, {QString::number(i), QString::number(i % 7)});
        Table table(lines, twoColumns);
        QCOMPARE(table.model.rowCount(), BlockTableModel::fetchStep);
        table.view.scrollToBottom();
        QTRY_VERIFY(table.model.rowCount() > BlockTableModel::fetchStep);
        table.model.sort(0, Qt::DescendingOrder);
        QCOMPARE(table.row(0)[0], QString::number(total));
        QGuiApplication::clipboard()->clear();
        QTest::keyClick(&table.view, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&table.view, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text().count('\n'), total);
    }

    // "Export CSV…" writes titles and rows through the file dialog, quoting
    // commas, quotes and carriage returns, replaces a planted link rather than
    // writing through it, and says why it failed.
    void exportCsv()
    {
        ScratchDir dir;
        const BlockLayout& layout = blockLayouts[2]; // Content Summary: 25, 6, 10
        auto* view = new BlockView;
        view->setBlockText(BlockText::fromString(lineOf(layout, {"nodes, all", "251", "a\rb"}) +
                                                 "\na \"heading\""));
        BlockPage page(view, layout, {});
        page.showView(BlockPage::Table);
        DialogAnswerer answers;
        answers.chooseFile(dir.filePath("out.csv"));
        page.findChild<QPushButton*>("export csv")->click();
        QVERIFY(answers.unexpected().isEmpty());
        QCOMPARE(dir.read("out.csv"), "Column 1,Column 2,Column 3\r\n"
                                      "\"nodes, all\",251,\"a\rb\"\r\n"
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

    // Arrows and Alt letters move along the switch, each page keeps its own
    // view, and every button has a name to be read out.
    void switchByKeys()
    {
        // Two pages of Mode Shapes in tabs, as in a browser window.
        QTabWidget window;
        BlockPage* pages[2];
        for (BlockPage*& page : pages) {
            auto* view = new BlockView;
            view->setBlockText(BlockText::fromString(
                lineOf(blockLayouts[7], {"1", "0", "1", "2", "0", "0", "0"})));
            window.addTab(page = new BlockPage(view, blockLayouts[7], {}), "page");
        }
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QStringList names;
        for (auto view : {BlockPage::Text, BlockPage::Table, BlockPage::Plot})
            names << QAccessible::queryAccessibleInterface(pages[0]->switchButton(view))
                         ->text(QAccessible::Name);
        QCOMPARE(names, (QStringList{"Show as text", "Show as table", "Show as plot"}));

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
};

QTEST_MAIN(TestBlockTable)
#include "test_blocktable.moc"
