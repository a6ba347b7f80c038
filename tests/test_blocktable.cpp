// A block page's table and its switch: every block's layout as the format
// documents it, how lines are cut into its columns, which cells are
// numbers, sorting through the header and back to line order, the modes of
// Mode Shapes rows, a table of many rows walked by keys, copy and CSV
// export, and the switch and the table driven by keys and read by assistive
// technology. Which pages of the browser get the switch is held in the
// plot's test, with what they plot.
#include "blockfilewriter.h"
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
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QScrollBar>
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
        QTest::addColumn<int>("headerLines");
        QTest::addColumn<QString>("widths"); // one per column, blank-separated
        QTest::addColumn<QString>("titles"); // "|"-separated, empty: none
        // clang-format off
        QTest::newRow("1 Version code")               << 9  << "30"                   << "";
        QTest::newRow("2 Header")                     << 9  << "50"                   << "";
        QTest::newRow("3 Content Summary")            << 9  << "25 6 10"              << "";
        QTest::newRow("4 Nodal Coordinates")          << 9  << "5 18 18 18"           << "";
        QTest::newRow("5 none")                       << 0  << ""                     << "";
        QTest::newRow("6 Global Body Properties")     << 9  << "20 12 12 12"          << "";
        QTest::newRow("7 Eigenvalues")                << 8  << "5 18 18 18 18 18"
            << "Mode|Eigenvalue|Hertz|Radians|Gen. Mass|Gen. Stiff";
        QTest::newRow("8 Mode Shapes")                << 9  << "5 18 18 18 18 18 18"
            << "ID|dx|dy|dz|ax|ay|az";
        QTest::newRow("9 Nodal Masses")               << 9  << "5 18"                 << "";
        QTest::newRow("10 Nodal Inertias")            << 9  << "30 20 18 18 18"       << "";
        QTest::newRow("11 Units")                     << 9  << "30"                   << "";
        QTest::newRow("12 Generalized Stiffness")     << 9  << "7 7 18"               << "";
        QTest::newRow("13 Generalized Mass")          << 9  << "7 7 18"               << "";
        QTest::newRow("14 Element Faces")             << 11 << "7 7 7 7 7"            << "";
        QTest::newRow("15 Generalized Damping")       << 9  << "50"                   << "";
        QTest::newRow("16 Mode Shape Transformation") << 11 << "14 14 14 14 14 14"    << "";
        QTest::newRow("17 Interface Nodes")           << 9  << "5 7"                  << "";
        QTest::newRow("18 Stress Modes")              << 9  << "5 18 18 18 18 18 18"
            << "ID|Sigma X|Sigma Y|Sigma Z|Tau XY|Tau XZ|Tau YZ";
        for (const int n : {1, 2, 3, 4, 5, 7, 8, 9}) // no Invariants 6
            QTest::addRow("%d Invariants %d", n + 18 - (n > 6), n) << 9 << "20" << "";
        QTest::newRow("27 Preloads")                  << 9  << "5 20"                 << "";
        QTest::newRow("28 Modal Loads")               << 9  << "5 30"                 << "";
        QTest::newRow("29 Strain Modes")              << 9  << "5 18 18 18 18 18 18"
            << "ID|Epsilon X|Epsilon Y|Epsilon Z|Gamma XY|Gamma XZ|Gamma YZ";
        // clang-format on
    }

    // Each block's layout as the format documents it, the zeros and nulls
    // behind the last column too. In a table every cell comes back from its
    // place under its title (or "Column n"), a wide letter counting as one
    // character; a line that is not data stands whole in a last column and
    // its tool tip, marked.
    void columnsOfEveryLayout()
    {
        QFETCH(int, headerLines);
        QFETCH(QString, widths);
        QFETCH(QString, titles);
        QCOMPARE(blockLayoutCount, 29);
        const BlockLayout& layout =
            blockLayouts[QString(QTest::currentDataTag()).section(' ', 0, 0).toInt() - 1];
        const QStringList width = widths.split(' ', Qt::SkipEmptyParts);
        QStringList title = titles.split('|', Qt::SkipEmptyParts);
        QCOMPARE(layout.headerLines, headerLines);
        QCOMPARE(layout.columnCount, int(width.size()));
        for (int column = 0; column < 7; ++column) {
            QCOMPARE(layout.columnWidths[column], width.value(column, "0").toInt());
            QCOMPARE(QString::fromLatin1(layout.columnTitles[column]), title.value(column));
            QCOMPARE(layout.columnTitles[column] == nullptr, column >= title.size());
        }
        if (width.size() < 2)
            return; // no table
        QStringList cells;
        for (int c = 0; c < layout.columnCount; ++c) {
            cells << QString(c ? "%1e-3" : "\u00fc%1").arg(c + 1); // every column is 5 or wider
            if (c >= title.size())
                title << QString("Column %1").arg(c + 1);
        }
        const QString data = lineOf(layout, cells);
        // Blank up to where the last column starts.
        const QString tooShort(data.size() - layout.columnWidths[layout.columnCount - 1], ' ');
        Table table({data, "  Mode 3", tooShort, data + "x"}, layout);
        const bool modes = title[0] == "ID"; // node lists of one mode after another
        if (modes) {
            cells.prepend("");
            title.prepend("Mode");
        }
        QCOMPARE(table.row(-1), title << "Note");
        QCOMPARE(table.row(0), cells << "");
        for (int row : {1, 2, 3}) {
            const QModelIndex first = table.model.index(row, modes);
            QCOMPARE(table.row(row).last(), table.text.line(row));
            QCOMPARE(first.data(Qt::ToolTipRole).toString(), table.text.line(row));
            QVERIFY(first.data(Qt::FontRole).value<QFont>().italic());
            QCOMPARE(table.row(row).mid(modes, title.size() - 1 - modes).join(""), "");
        }
    }

    void numbers_data()
    {
        QTest::addColumn<QString>("cell");
        QTest::addColumn<QString>("number"); // empty: the cell is text
        // clang-format off
        const char* rows[][2] = {
            {"1.5E-03", "0.0015"}, {"1.5e-03", "0.0015"}, {"1.5D-03", "0.0015"},
            {"1.5d-03", "0.0015"}, {"1.000000-100", "1e-100"}, {"1.5+100", "1.5e100"},
            {"-2.5E+300", "-2.5e300"}, {"42", "42"}, {"-7", "-7"}, {"+3", "3"}, {"2.5", "2.5"},
            {".5", "0.5"}, {"5.", "5"}, {"4.9E-324", "4.9e-324"}, {"1.0E-400", "0"},
            {"inf", ""}, {"-inf", ""}, {"nan", ""}, {"infinity", ""}, {"1,5", ""}, {"1.5-", ""},
            {"1.5E", ""}, {"1.5E+", ""}, {"1.5D+-3", ""}, {"E5", ""}, {".", ""}, {"-", ""},
            {"1.0E+400", ""}, {"1.0+400", ""}, {"0x10", ""}, {"--1", ""}, {"1.5e-3x", ""},
            {"1 5", ""}, {"1.5-3.0", ""},
        };
        // clang-format on
        for (const auto& row : rows)
            QTest::addRow("%s", row[0]) << row[0] << row[1];
    }

    // The forms a solver writes are numbers, right-aligned; anything else,
    // also what overflows, is text, left-aligned, and leaves no value.
    void numbers()
    {
        QFETCH(QString, cell);
        QFETCH(QString, number);
        const std::optional<double> parsed = BlockColumns::parseNumber(cell.toLatin1());
        QCOMPARE(parsed.has_value(), !number.isEmpty());
        if (parsed)
            QCOMPARE(*parsed, number.toDouble());
        Table table({lineOf(twoColumns, {"1", cell})}, twoColumns);
        const int align = table.model.index(0, 1).data(Qt::TextAlignmentRole).toInt();
        QCOMPARE(align & Qt::AlignHorizontal_Mask, parsed ? Qt::AlignRight : Qt::AlignLeft);
    }

    void sortByHeader_data()
    {
        QTest::addColumn<QString>("values"); // blank-separated, top down
        QTest::addColumn<int>("clicks");
        QTest::addColumn<QString>("order"); // "heading": the line that is no data
        const QString numbers = "1.0E+00 inf -1.2E-03 +3 1,5 -5 2.5D+01 1e-10 nan 0.0 1.0-100";
        // clang-format off
        QTest::newRow("ascending") << numbers << 1
            << "-5 -1.2E-03 0.0 1.0-100 1e-10 1.0E+00 +3 2.5D+01 inf 1,5 nan heading";
        QTest::newRow("descending") << numbers << 2
            << "2.5D+01 +3 1.0E+00 1e-10 1.0-100 0.0 -1.2E-03 -5 inf 1,5 nan heading";
        QTest::newRow("line order again") << numbers << 3
            << "1.0E+00 inf heading -1.2E-03 +3 1,5 -5 2.5D+01 1e-10 nan 0.0 1.0-100";
        QTest::newRow("line order from the menu") << numbers << -1 // then "Line Order"
            << "1.0E+00 inf heading -1.2E-03 +3 1,5 -5 2.5D+01 1e-10 nan 0.0 1.0-100";
        QTest::newRow("text") << "b10 a2 10 9 a10" << 1 << "10 9 a10 a2 b10 heading";
        QTest::newRow("text down") << "b10 a2 10 9 a10" << 2 << "b10 a2 a10 9 10 heading";
        // clang-format on
    }

    // A click on the title sorts, numbers first and text behind them in line
    // order, a second turns the order round, a third (or "Line Order" in the
    // context menu) brings back line order; the heading that is no data stays
    // last, each row keeps its line number.
    void sortByHeader()
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
        for (int i = 0; i < qAbs(clicks); ++i)
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, title);
        if (clicks < 0) {
            DialogAnswerer answers;
            answers.chooseMenuEntry("Line Order");
            const QPoint at(5, 5);
            QContextMenuEvent menu(QContextMenuEvent::Keyboard, at, table.view.mapToGlobal(at));
            QCoreApplication::sendEvent(table.view.viewport(), &menu);
            VERIFY_DIALOGS(answers);
        }
        QStringList sorted;
        for (int row = 0; row < lines.size(); ++row) {
            const QStringList cells = table.row(row);
            sorted << (cells[1].isEmpty() ? cells.last() : cells[1]);
            const int line = table.model.headerData(row, Qt::Vertical).toInt();
            QVERIFY(table.text.line(line - 1).endsWith(sorted.last()));
        }
        QCOMPARE(sorted.join(' '), order);
    }

    void modes_data()
    {
        QTest::addColumn<QString>("ids"); // node IDs top down; "M<n>": a heading of mode n
        QTest::addColumn<QString>("modes");
        // clang-format off
        QTest::newRow("headings")      << "M4 1 3 2 M9 1 2" << "4 4 4 4 9 9 9";
        QTest::newRow("IDs repeat")    << "1 2 3 1 2 3"     << "1 1 1 2 2 2";
        QTest::newRow("split unknown") << "1 3 2 1"         << "";
        // clang-format on
    }

    // Mode Shapes rows carry their mode as the plot splits them, after a sort
    // by node too.
    void modes()
    {
        QFETCH(QString, ids);
        QFETCH(QString, modes);
        const BlockLayout& layout = blockLayouts[7];
        QStringList lines;
        for (const QString& id : ids.split(' '))
            lines << (id.startsWith('M') ? "   MODE " + id.mid(1) + ", 12.5 Hz"
                                         : lineOf(layout, {id, "1", "0", "0", "0", "0", "0"}));
        Table table(lines, layout);
        QCOMPARE(table.row(-1).first(), modes.isEmpty() ? "ID" : "Mode"); // none rather than false
        if (modes.isEmpty())
            return;
        const QStringList byLine = modes.split(' ');
        table.view.sortByColumn(1, Qt::DescendingOrder);
        for (int row = 0; row < lines.size(); ++row) {
            const int line = table.model.headerData(row, Qt::Vertical).toInt();
            QCOMPARE(table.row(row).first(), byLine[line - 1]);
        }
    }

    // Every row is there at once: the scroll bar spans them, Ctrl+End and a
    // drag of the scroll bar reach the last.
    void walkManyRows()
    {
        const int total = 200000;
        QStringList lines;
        for (int i = 1; i <= total; ++i)
            lines << lineOf(twoColumns, {QString::number(i % 9999), "1.5"});
        Table table(lines, twoColumns);
        QCOMPARE(table.model.rowCount(), total);
        QScrollBar* bar = table.view.verticalScrollBar();
        QVERIFY(bar->maximum() > total - 50);
        const QModelIndex last = table.model.index(total - 1, 0);
        bar->setSliderPosition(bar->maximum());
        QVERIFY(table.view.viewport()->rect().intersects(table.view.visualRect(last)));
        bar->setSliderPosition(0);
        table.view.setFocus();
        QTest::keyClick(&table.view, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(table.view.currentIndex().row(), total - 1);
        QVERIFY(table.view.viewport()->rect().intersects(table.view.visualRect(last)));
    }

    void copySelection_data()
    {
        QTest::addColumn<QList<QRect>>("ranges"); // x: column, y: row
        QTest::addColumn<QString>("copied");
        const QString titles = "Column 1\tColumn 2\n";
        QTest::newRow("one cell") << QList<QRect>{{1, 1, 1, 1}} << "Column 2\nb2\n";
        QTest::newRow("block") << QList<QRect>{{0, 0, 2, 2}} << titles + "a1\tb1\na2\tb2\n";
        QTest::newRow("ragged, gaps empty")
            << QList<QRect>{{0, 0, 1, 1}, {1, 2, 1, 1}} << titles + "a1\t\n\tb3\n";
        QTest::newRow("heading whole")
            << QList<QRect>{{0, 3, 3, 1}} << titles.chopped(1) + "\tNote\n\t\tno data here\n";
    }

    // Ctrl+C on the view gives the cells as tab-separated text under their
    // titles; above the text view's bound it offers a file instead.
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

        ScratchDir dir;
        const qint64 bound = BlockView::copyLimit;
        BlockView::copyLimit = copied.size() / 2;
        DialogAnswerer answers;
        answers.pressButton("Save").chooseFile(dir.filePath("copy.txt"));
        QGuiApplication::clipboard()->clear();
        QTest::keyClick(&table.view, Qt::Key_C, Qt::ControlModifier);
        BlockView::copyLimit = bound;
        VERIFY_DIALOGS(answers);
        QCOMPARE(QString::fromUtf8(dir.read("copy.txt")), copied);
    }

    // "Export CSV…" writes titles and rows through the file dialog, quoting
    // commas, quotes and carriage returns, replaces a planted link rather than
    // writing through it, says why it failed, and leaves the old file when
    // cancelled halfway.
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
        QCOMPARE(dir.read("out.csv"), "Column 1,Column 2,Column 3,Note\r\n"
                                      "\"nodes, all\",251,\"a\rb\",\r\n"
                                      ",,,\"a \"\"heading\"\"\"\r\n");
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

        QStringList lines(50000, lineOf(layout, {"a", "1", "2"}));
        auto* bigView = new BlockView;
        bigView->setBlockText(BlockText::fromString(lines.join('\n')));
        BlockPage big(bigView, layout, {});
        big.showView(BlockPage::Table);
        BlockFileWriter::progressDialogMade = [](QProgressDialog& progress) {
            QObject::connect(progress.findChild<QProgressBar*>(), &QProgressBar::valueChanged,
                             &progress, [&progress](int value) {
                                 if (value > 500)
                                     progress.cancel();
                             });
        };
        answers.chooseFile(dir.filePath("big.csv"));
        big.findChild<QPushButton*>("export csv")->click();
        BlockFileWriter::progressDialogMade = {};
        VERIFY_DIALOGS(answers);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files),
                 (QStringList{"link.csv", "out.csv", "victim"}));
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
            page->setAccessibleName("Mode Shapes");
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

        // Named after its page; Tab leaves it, arrows walk its cells.
        BlockTableView* table = pages[0]->tableView();
        QCOMPARE(QAccessible::queryAccessibleInterface(table)->text(QAccessible::Name),
                 "Mode Shapes table");
        table->setFocus();
        table->setCurrentIndex(table->model()->index(0, 0));
        QTest::keyClick(table, Qt::Key_Right);
        QTest::keyClick(table, Qt::Key_Tab);
        QVERIFY(!table->hasFocus());
        QCOMPARE(table->currentIndex(), table->model()->index(0, 1));
    }
};

QTEST_MAIN(TestBlockTable)
#include "test_blocktable.moc"
