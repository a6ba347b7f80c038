// The block page: which lines the reader keeps and when it reports progress,
// where its runs put characters, how its caret steps, and the view driven through its keys, mouse,
// find bar, clipboard and accessible text.
#include "blockcaret.h"
#include "blockreader.h"
#include "blockrunlayout.h"
#include "blockview.h"
#include "blockviewfinder.h"
#include "blockviewsearch.h"
#include "dialoganswerer.h"
#include "scratchdir.h"

#include <QTest>
#include <QtWidgets>

namespace
{

BlockText readBytes(QByteArray bytes, int header, QList<QByteArray>& skipped,
                    BlockReader::Progress progress = {})
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    BlockReader reader(header, std::move(progress), [&](const QByteArray& l) { skipped << l; });
    return reader.read(buffer, buffer.size());
}

// Tabs, a combining accent, a clef (a pair of units), wide letters and cases to find beside
// plain lines.
const QString sample = "alpha beta\tgamma\nse\u0301cond \U0001D11E\uFF44\uFF45 line\nthird one\n"
                       "abc Mode\nmode x MODE\nGr\u00F6\u00DFe kelvin\n";

// Long lines (over 16 KiB) with a tab, a pair of units and accents, between
// short ones, an empty one and a short one with a tab.
const BlockText lines = BlockText::fromString(
    "alpha beta\n\n" + QString(3000, 'a') + "\t" + QString(17000, 'b') + "\nx\U0001F600" +
    QString(4000, QChar(0xE9)) + "\t" + QString(4999, QChar(0xE9)) +
    "\nab\tc\nlast\nGr\u00FC\u00DFe x\nplain x\n\u00E7\u00E0 x \u00E7a\n");

// The page's font, and a run layout of the lines in it.
struct Runs : BlockRunLayout {
    Runs()
    {
        setText(&lines);
        setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    }
};

// At the browser's size, in a font that is not the interface's.
struct Page {
    BlockView view;
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&view);
    QAccessibleTextInterface* text = face->textInterface();
    explicit Page(const QString& content)
    {
        view.setBlockText(BlockText::fromString(content));
        view.setFont(QFont("Courier", 10));
        view.resize(580, 230);
        view.show();
        view.activateWindow();
        view.setFocus();
    }
    void keys(const QString& list)
    {
        for (const QString& key : list.split(',', Qt::SkipEmptyParts))
            QTest::keySequence(&view, QKeySequence(key));
    }
};

// Line by line from a place, as QString finds it: (line, column, wrapped); line -1 when not
// found.
std::tuple<qsizetype, qsizetype, bool> reference(const BlockText& text, QString needle,
                                                 Qt::CaseSensitivity cs, BlockCaret::Pos from,
                                                 bool backward)
{
    const qsizetype count = text.lineCount();
    for (qsizetype step = 0; step <= count; ++step) {
        const qsizetype at = backward ? from.line - step : from.line + step;
        const qsizetype line = (at % count + count) % count;
        QString decoded = text.line(line), key = needle;
        if (text.isLong(line)) {
            decoded.replace('\t', ' ');
            key.replace('\t', ' ');
        }
        const qsizetype start = step > 0 ? (backward ? decoded.size() : 0) : from.column - backward;
        const qsizetype last = std::min(start, decoded.size() - key.size());
        const qsizetype found = !backward   ? decoded.indexOf(key, start, cs)
                                : last >= 0 ? decoded.lastIndexOf(key, last, cs)
                                            : -1;
        if (found >= 0)
            return {line, found, at < 0 || at >= count};
    }
    return {-1, 0, false};
}

} // namespace

class TestBlockView : public QObject
{
    Q_OBJECT

private slots:
    void reader_data()
    {
        using L = QList<QByteArray>;
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("header");
        QTest::addColumn<L>("kept");
        QTest::addColumn<L>("skipped");
        // clang-format off
        QTest::newRow("LF")               << QByteArray("h\na\nb\n")       << 1 << L{"a", "b"} << L{"h"};
        QTest::newRow("CRLF")             << QByteArray("h\r\na\r\nb\r\n") << 1 << L{"a", "b"} << L{"h"};
        // The last line's CR goes as a CRLF's would.
        QTest::newRow("lone CR, no last end") << QByteArray("a\rb\nc\r\r\nd\r") << 0 << L{"a\rb", "c\r", "d"} << L{};
        QTest::newRow("NUL shown, not cut") << QByteArray("a\0b\n\0", 5) << 0 << L{"a\uFFFDb", "\uFFFD"} << L{};
        QTest::newRow("empty dropped, blanks kept") << QByteArray("h\n\na\r\n\r\n  \n\n b \n") << 1 << L{"a", "  ", " b "} << L{"h"};
        QTest::newRow("short header")     << QByteArray("h1\r\nh2")        << 4 << L{} << L{"h1", "h2", "", ""};
        QTest::newRow("just the header")  << QByteArray("h1\nh2\n")        << 2 << L{} << L{"h1", "h2"};
        QTest::newRow("only empty after") << QByteArray("h\n\n\r\n\n")     << 1 << L{} << L{"h"};
        QTest::newRow("BOM")              << QByteArray("\xEF\xBB\xBFx\ny\n") << 0 << L{"x", "y"} << L{};
        QTest::newRow("BOM in header")    << QByteArray("\xEF\xBB\xBFh\nx")  << 1 << L{"x"} << L{"h"};
        QTest::newRow("BOM later, raw bytes") << QByteArray("x\n\xEF\xBB\xBFz\xFF\t\n") << 0 << L{"x", "\xEF\xBB\xBFz\xFF\t"} << L{};
        // clang-format on
    }

    void reader()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, header);
        QList<QByteArray> skipped, lines;
        const BlockText text = readBytes(bytes, header, skipped);
        for (qsizetype i = 0; i < text.lineCount(); ++i)
            lines << text.lineBytes(i);
        QTEST(lines, "kept");
        QTEST(skipped, "skipped");
    }

    void progress_data()
    {
        QTest::addColumn<QStringList>("pattern"); // lines 1, 2, ... take these in turn
        QTest::addColumn<int>("answers");         // calls answered true before a false
        QTest::addColumn<QList<qint64>>("calls");
        QTest::addColumn<int>("kept");
        using C = QList<qint64>;
        const QStringList digits{"0123456789"};
        // clang-format off
        QTest::newRow("to the end")   << digits << 9 << C{10000, 20000} << 2500;
        QTest::newRow("stop at once") << digits << 0 << C{10000} << 1000;
        QTest::newRow("empty lines count; capped at the size") << QStringList{"", "0123456789"} << 9 << C{10000, 17518} << 1250;
        QTest::newRow("characters, not bytes") << QStringList{"\u00E9t\u00E9"} << 9 << C{3000, 6000} << 2500;
        // clang-format on
    }

    // The header is not counted; a stop keeps whole lines.
    void progress()
    {
        QFETCH(QStringList, pattern);
        QFETCH(int, answers);
        QFETCH(int, kept);
        QByteArray bytes = "header 1\nheader 2\n";
        for (int i = 0; i < 2500; ++i)
            bytes += pattern[i % pattern.size()].toUtf8() + "\r\n";
        QList<qint64> seen;
        QList<QByteArray> skipped;
        const BlockText text = readBytes(bytes, 2, skipped, [&](qint64 estimate) {
            seen << estimate;
            return seen.size() <= answers;
        });
        QTEST(seen, "calls");
        QCOMPARE(text.lineCount(), kept);
        QCOMPARE(text.line(kept - 1), pattern.last());
    }

    void runs_data()
    {
        QTest::addColumn<qsizetype>("line");
        QTest::addColumn<qsizetype>("column");
        QTest::addColumn<qsizetype>("run");
        QTest::addColumn<int>("x"); // in columns
        // clang-format off
        QTest::newRow("empty line")           << qsizetype(1) << qsizetype(0)     << qsizetype(0)  << 0;
        QTest::newRow("tab in a short line")  << qsizetype(4) << qsizetype(3)     << qsizetype(0)  << 8;
        QTest::newRow("a run's last column")  << qsizetype(2) << qsizetype(1023)  << qsizetype(0)  << 1023;
        QTest::newRow("the next run's first") << qsizetype(2) << qsizetype(1024)  << qsizetype(1)  << 1024;
        QTest::newRow("after a long line's tab") << qsizetype(2) << qsizetype(3001) << qsizetype(2) << 3001;
        QTest::newRow("a long line's end")    << qsizetype(2) << qsizetype(20001) << qsizetype(19) << 20001;
        QTest::newRow("accents past an edge") << qsizetype(3) << qsizetype(1025)  << qsizetype(1)  << 1025;
        // clang-format on
    }

    // Every unit of a long line takes a column, a tab too; a place and its x lead to each other.
    void runs()
    {
        QFETCH(qsizetype, line);
        QFETCH(qsizetype, column);
        Runs runs;
        const qreal x = runs.xOf(line, column);
        QTEST(runs.runOf(line, column), "run");
        QTEST(qRound(x / runs.columnWidth()), "x");
        QCOMPARE(runs.columnAt(line, x), column);
        QCOMPARE(runs.columnAt(line, x + 1e6 * runs.columnWidth()), lines.lineLength(line));
    }

    void caret_data()
    {
        // Moves from a place ("S" before one: with Shift; "All": select all, "Word": the word
        // at the caret): where the anchor and the caret end, as line and column each.
        using P = QList<qsizetype>;
        QTest::addColumn<P>("from");
        QTest::addColumn<QString>("moves");
        QTest::addColumn<P>("to");
        // clang-format off
        QTest::newRow("over a run's edge")     << P{2, 1023} << "Right"            << P{2, 1024, 2, 1024};
        QTest::newRow("back over it")          << P{2, 1025} << "Left,Left"        << P{2, 1023, 2, 1023};
        QTest::newRow("accents over an edge")  << P{3, 1022} << "Right,Right,Left" << P{3, 1023, 3, 1023};
        QTest::newRow("a pair is one step")    << P{3, 1}    << "Right,Right,Left" << P{3, 3, 3, 3};
        QTest::newRow("words")                 << P{0, 0}    << "WordRight,Right,WordLeft" << P{0, 6, 0, 6};
        QTest::newRow("over line ends")        << P{0, 10}   << "Right,Right"      << P{2, 0, 2, 0};
        QTest::newRow("back over an empty line") << P{2, 0}  << "Left,Left"        << P{0, 10, 0, 10};
        QTest::newRow("held at the start")     << P{0, 0}    << "Left,WordLeft,Up,PageUp" << P{0, 0, 0, 0};
        QTest::newRow("held at the end")       << P{8, 7}    << "Down,WordRight,Right" << P{8, 7, 8, 7};
        QTest::newRow("down keeps its x")      << P{0, 5}    << "Down,Down"        << P{2, 5, 2, 5};
        QTest::newRow("past short lines and back") << P{2, 5000} << "Down,Down,Down,Up,Up,Up" << P{2, 5000, 2, 5000};
        QTest::newRow("a page short of the end") << P{6, 1}  << "PageDown"         << P{8, 1, 8, 1};
        QTest::newRow("pages back")            << P{4, 2}    << "PageUp,PageUp"    << P{0, 2, 0, 2};
        QTest::newRow("line end and start")    << P{2, 5}    << "LineEnd,SLineStart" << P{2, 20001, 2, 0};
        QTest::newRow("end, last line, start") << P{3, 7}    << "End,SLastLine,SStart" << P{8, 7, 0, 0};
        QTest::newRow("selected over an edge") << P{2, 1022} << "SRight,SRight,SRight" << P{2, 1022, 2, 1025};
        QTest::newRow("over lines, collapsed") << P{0, 2}    << "SDown,SDown,Left" << P{0, 2, 0, 2};
        QTest::newRow("all, then to its end")  << P{3, 3}    << "All,Right"        << P{8, 7, 8, 7};
        QTest::newRow("a word, from its start") << P{0, 6}   << "Word"             << P{0, 6, 0, 10};
        // clang-format on
    }

    void caret()
    {
        QFETCH(QList<qsizetype>, from);
        QFETCH(QString, moves);
        const QStringList names{"Left",  "Right",  "WordLeft", "WordRight", "Up",
                                "Down",  "PageUp", "PageDown", "LineStart", "LineEnd",
                                "Start", "End",    "LastLine"}; // in Move's order
        Runs runs;
        BlockCaret caret({from[0], from[1]}, {from[0], from[1]});
        for (const QString& move : moves.split(',')) {
            if (move == "All" || move == "Word")
                caret = move == "All" ? BlockCaret::all(lines)
                                      : BlockCaret::wordAt(lines, caret.cursor());
            else
                caret = caret.moved(BlockCaret::Move(names.indexOf(move.mid(move.startsWith('S')))),
                                    move.startsWith('S'), runs, 2);
        }
        const QList<qsizetype> ends{caret.anchor().line, caret.anchor().column, caret.cursor().line,
                                    caret.cursor().column};
        QTEST(ends, "to");
    }

    void search_data()
    {
        // Lines in UTF-8; "@" stands for a line of 3 search windows and some, where "xyz"
        // crosses the first window's edge, and "\u00E9xyZ" the second's, and "XYz" the edge of
        // the last window but one back from the end; "\u212A" (Kelvin) is in it too. "#" is a
        // long line of plain ASCII.
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QString>("needle");
        QTest::addColumn<bool>("caseCounts");
        const QByteArray x5 = QByteArray("abcdefgh\n").repeated(30000);
        // clang-format off
        QTest::newRow("any case")          << QByteArray("Alpha alpha\nGAMMA alpha alpha\n\nalphA") << "ALPHA" << false;
        QTest::newRow("case counts")       << QByteArray("Alpha alpha\nGAMMA alpha alpha\n\nalphA") << "alpha" << true;
        QTest::newRow("not over line ends") << x5 + "ab\ncd\nab" << "hab" << false;
        QTest::newRow("many lines")        << x5 + "xyz\n" + x5 << "XyZ" << false;
        QTest::newRow("non-ASCII lines")   << QByteArray("Gr\xC3\xBC\xC3\x9F" "e\nGR\xC3\x9C\xC3\x9F" "E x\nx\n") << "\u00FC\u00DFE" << false;
        QTest::newRow("folds to ASCII")    << QByteArray("\xE2\x84\xAA" "elvin\nkelvin\n@\n") << "KELVIN" << false;
        QTest::newRow("Kelvin sought")     << QByteArray("kelvin\nx\n@\n\xE2\x84\xAA" "elvin") << "\u212Aelvin" << false;
        QTest::newRow("long, window edges") << QByteArray("short xyz\n@\nxyz") << "xyz" << false;
        QTest::newRow("long, case counts") << QByteArray("@\nxyz") << "xyZ" << true;
        QTest::newRow("long, tab as blank") << QByteArray("z a\n#\nz\ta\nz a") << "z\ta" << false;
        QTest::newRow("long, blank as tab") << QByteArray("z\ta\n#\nz a\n") << "Z A" << false;
        // clang-format on
    }

    // Wherever it starts, forward or back, a search finds what QString finds line by line,
    // wrapping once; in a long line a tab is found as a blank.
    void search()
    {
        QFETCH(QByteArray, lines);
        QFETCH(QString, needle);
        QFETCH(bool, caseCounts);
        const qsizetype window = BlockViewSearch::windowBytes;
        QByteArray longLine = QByteArray("Z\ta").repeated(window);
        longLine.truncate(3 * window + 500);
        for (const auto& [at, what] :
             QList<std::pair<qsizetype, QByteArray>>{{window - 1, "xyz"},
                                                     {window + 40, "\xE2\x84\xAA"},
                                                     {2 * window - 3, "\xC3\xA9xyZ"},
                                                     {longLine.size() - window - 2, "XYz"}})
            longLine.replace(at, what.size(), what);
        lines.replace("@", longLine).replace("#", QByteArray("Z\ta").repeated(6000));
        const BlockText text = BlockText::fromString(QString::fromUtf8(lines));
        const Qt::CaseSensitivity cs = caseCounts ? Qt::CaseSensitive : Qt::CaseInsensitive;
        const BlockViewSearch search(text, needle, cs);
        const qsizetype count = text.lineCount();
        for (const qsizetype line : {qsizetype(0), qsizetype(1), count / 2, count - 1})
            for (const qsizetype column : {qsizetype(0), text.lineLength(line) / 2 + 1})
                for (const bool backward : {false, true}) {
                    const BlockViewSearch::Hit hit = search.find(line, column, backward);
                    QCOMPARE(std::tuple(hit.line, hit.column, hit.wrapped),
                             reference(text, needle, cs, {line, column}, backward));
                }
    }

    void findAside_data()
    {
        QTest::addColumn<QString>("then"); // once the find bar shows progress
        QTest::addColumn<int>("length");   // of the line searched
        QTest::newRow("to the end") << "" << 100'000;
        QTest::newRow("Escape") << "Escape" << 2'000'000;
        QTest::newRow("closed") << "close" << 2'000'000;
        QTest::newRow("new text") << "text" << 2'000'000;
        QTest::newRow("view gone") << "destroy" << 2'000'000;
    }

    // A long search runs aside: the window goes on and the find bar tells how far it got, as
    // assistive technology reads it; the caret moves when it ends, or stays when it is stopped.
    void findAside()
    {
        QFETCH(QString, then);
        QFETCH(int, length);
        // Slow on purpose: a match starts everywhere and fails only near the needle's end.
        const QString needle = QString(2000, 'a') + "ba";
        auto* view = new BlockView;
        view->setBlockText(BlockText::fromString(QString(length, 'a') + needle));
        view->show();
        QTest::keyClick(view, Qt::Key_F, Qt::ControlModifier);
        auto* edit = view->findChild<QLineEdit*>("find text");
        const auto* finder = view->findChild<BlockViewFinder*>();
        QAccessibleInterface* status =
            QAccessible::queryAccessibleInterface(view->findChild<QLabel*>("find status"));
        edit->insert(needle);
        QTest::keyClick(edit, Qt::Key_Return);
        if (then.isEmpty()) {
            QTRY_COMPARE_WITH_TIMEOUT(view->selectedText(), needle, 30000);
            QCOMPARE(status->text(QAccessible::Name), "");
        } else {
            QTRY_VERIFY_WITH_TIMEOUT(status->text(QAccessible::Name).startsWith("Searching: "),
                                     10000);
            QVERIFY(status->text(QAccessible::Name).endsWith(" %") &&
                    view->selectedText().isEmpty());
        }
        if (then == "destroy") {
            delete view;
            return;
        }
        then == "Escape" ? QTest::keyClick(edit, Qt::Key_Escape)
        : then == "close"
            ? QTest::mouseClick(view->findChild<QWidget*>("close find bar"), Qt::LeftButton)
        : then == "text" ? view->setBlockText(BlockText::fromString("xyz"))
                         : void();
        QVERIFY(!finder->isRunning() && status->text(QAccessible::Name).isEmpty());
        QCOMPARE(view->selectedText(), then.isEmpty() ? needle : "");
        delete view;
    }

    void interact_data()
    {
        // Keys in the view; "drag" with the mouse, or a text to find and keys in the find
        // bar ("case": the Match case box); the key that copies; the text then selected;
        // the find bar's status.
        QTest::addColumn<int>("at"); // where the selection starts
        QTest::addColumn<QStringList>("steps");
        using L = QStringList;
        const QString two = sample.section('\n', 0, 1);
        // clang-format off
        QTest::newRow("select all")        << 0  << L{"Ctrl+A", "", "", "Ctrl+C", sample};
        QTest::newRow("Shift+Down")        << 0  << L{"Shift+Down,Shift+Down", "", "", "Ctrl+Insert", two + "\n"};
        QTest::newRow("a cluster a step")  << 18 << L{"Down,Right,Shift+Right", "", "", "Ctrl+C", "e\u0301"};
        QTest::newRow("Shift+Up from the end") << 54 << L{"Ctrl+End,Shift+Up,Shift+Home", "", "", "Ctrl+C", "mode x MODE\nGr\u00F6\u00DFe kelvin"};
        QTest::newRow("drag")              << 0  << L{"", "drag", "", "Ctrl+C", two};
        QTest::newRow("find the next")     << 54 << L{"", "mode", "Return,F3", "", "mode", ""};
        QTest::newRow("case counts")       << 61 << L{"", "MODE", "case,Return", "", "MODE", ""};
        QTest::newRow("back")              << 54 << L{"Ctrl+End", "MODE", "Shift+Return,Shift+F3", "", "mode", ""};
        QTest::newRow("back over the start") << 0 << L{"", "alpha", "Shift+F3", "", "alpha", "Continued from the end"};
        QTest::newRow("on over the end")   << 0  << L{"Ctrl+End", "Alpha", "Enter", "", "alpha", "Continued from the start"};
        QTest::newRow("not found")         << 0  << L{"Right", "zzz", "Return", "Ctrl+C", "", "Not found"};
        // clang-format on
    }

    // The page as assistive technology reads it, then driven. The find bar keeps room to type, its
    // status gives way, whole in its tool tip; the bar speaks the interface's font and its close
    // control does not pass for the window's "Close".
    void interact()
    {
        QFETCH(QStringList, steps);
        Page page(sample);
        QVERIFY(QTest::qWaitForWindowActive(&page.view));
        QCOMPARE(page.face->role(), QAccessible::EditableText);
        QVERIFY(page.face->state().readOnly && page.face->state().multiLine);
        QCOMPARE(page.text->text(0, page.text->characterCount()), sample);
        int start, end;
        // The second line starts at 17.
        QCOMPARE(page.text->textAtOffset(20, QAccessible::LineBoundary, &start, &end),
                 sample.section('\n', 1, 1) + "\n");
        QCOMPARE(page.text->textAfterOffset(18, QAccessible::CharBoundary, &start, &end),
                 "c");           // after the cluster e and its accent
        DialogAnswerer answerer; // "not found" never comes as a box
        QWidget* viewport = page.view.viewport();
        QGuiApplication::clipboard()->clear();
        page.keys(steps[0]);
        if (steps[1] == "drag") {
            const QPoint to(viewport->width() - 2, page.view.lineRect(1).center().y());
            QTest::mousePress(viewport, Qt::LeftButton, {},
                              {1, page.view.lineRect(0).center().y()});
            QTest::mouseMove(viewport, to);
            QTest::mouseRelease(viewport, Qt::LeftButton, {}, to);
        } else if (!steps[1].isEmpty()) {
            page.keys("Ctrl+F");
            auto* edit = page.view.findChild<QLineEdit*>("find text");
            QVERIFY(edit && edit->hasFocus());
            QLineEdit next(&page.view); // where the focus would go by itself
            next.show();
            edit->insert(steps[1]);
            for (const QString& key : steps[2].split(',')) {
                key == "case" ? QTest::mouseClick(page.view.findChild<QCheckBox*>(), Qt::LeftButton)
                              : QTest::keySequence(edit, QKeySequence(key));
                QTRY_VERIFY(!page.view.findChild<BlockViewFinder*>()->isRunning());
            }
            const QWidget* bar = page.view.findChild<QWidget*>("find bar");
            const auto* status = page.view.findChild<QLabel*>("find status");
            QWidget* close = page.view.findChild<QWidget*>("close find bar");
            QCOMPARE(status->toolTip(), steps[5]);
            QVERIFY(status->text() == status->toolTip() || status->text().endsWith(QChar(0x2026)));
            QVERIFY(edit->width() >= 15 * edit->fontMetrics().averageCharWidth());
            QVERIFY(bar->rect().contains(status->geometry()) &&
                    bar->rect().contains(close->geometry()));
            QCOMPARE(bar->font().family(), QApplication::font().family());
            QCOMPARE(QAccessible::queryAccessibleInterface(close)->text(QAccessible::Name),
                     "Close the find bar (Escape)");
            QTest::keyClick(edit, Qt::Key_Escape);
            QVERIFY(!edit->isVisible() && page.view.hasFocus());
        }
        page.text->selection(0, &start, &end);
        QTEST(start, "at");
        QCOMPARE(page.text->text(start, end), steps[4]);
        QCOMPARE(page.view.selectedText(), steps[4]);
        page.keys(steps[3]);
        QCOMPARE(QGuiApplication::clipboard()->text(), steps[3].isEmpty() ? "" : steps[4]);
        VERIFY_DIALOGS(answerer);
    }

    void endAndPages()
    {
        Page page(QString("line\n").repeated(499) + QString(300, 'w'));
        QScrollBar* vertical = page.view.verticalScrollBar();
        QVERIFY(page.view.horizontalScrollBar()->maximum() > 0); // no wrapping
        page.keys("End"); // alone it goes to the bottom, at the first column
        QCOMPARE(vertical->value(), vertical->maximum());
        QCOMPARE(page.view.horizontalScrollBar()->value(), 0);
        const QRect inSight = page.view.viewport()->rect();
        QVERIFY(inSight.contains(page.view.lineRect(499)) &&
                inSight.contains(page.view.cursorRect()));
        // Lines and pages scroll at once, the caret following; Space pages too.
        const int step = vertical->pageStep();
        // clang-format off
        for (const auto& [keys, top] : QList<QPair<QString, int>>{{"Ctrl+Home,PgDown,PgDown", 2 * step},
                 {"Ctrl+Home,Down", 1}, {"Space", 1 + step}, {"Up", step}, {"Shift+Space", 0}}) {
            // clang-format on
            page.keys(keys);
            QCOMPARE(vertical->value(), top);
            QCOMPARE(page.text->cursorPosition(), top * 5);
        }
        // Extents for assistive technology: a character in sight has its box,
        // which leads back to it; one out of sight has none.
        QCOMPARE(page.text->offsetAtPoint(page.text->characterRect(6).center()), 6);
        QVERIFY(page.text->characterRect(499 * 5).isEmpty());
    }

    void copyOverTheLimit_data()
    {
        QTest::addColumn<QString>("keys");   // the selection
        QTest::addColumn<QString>("answer"); // to "Save it to a file instead?"
        QTest::addColumn<bool>("link");      // the chosen name is a link planted before
        QTest::addColumn<bool>("big");       // a line of 12 MiB (12.6 MB) instead of the sample
        // clang-format off
        QTest::newRow("all, saved")      << "Ctrl+A" << "Save" << false << false;
        QTest::newRow("in lines, saved") << "Down,Right,Shift+Down,Shift+Down,Shift+Right" << "Save" << false << false;
        QTest::newRow("link replaced")   << "Ctrl+A" << "Save" << true << false;
        QTest::newRow("cancelled")       << "Ctrl+A" << "Cancel" << false << false;
        QTest::newRow("a big line")      << "Ctrl+A" << "Save" << false << true;
        // clang-format on
    }

    // Too much for the clipboard, the selection goes to a file instead, written
    // as the program writes its files, a line in pieces; the clipboard is left alone.
    void copyOverTheLimit()
    {
        QFETCH(QString, keys);
        QFETCH(QString, answer);
        QFETCH(bool, link);
        ScratchDir dir;
        const QString target = dir.filePath("selection.txt");
        QVERIFY(!link ||
                (dir.write("victim", "keep") && QFile::link(dir.filePath("victim"), target)));
        QFETCH(bool, big);
        const QString all = big ? QString(12 << 20, 'w') + "\n" : sample;
        const QString selected = keys == "Ctrl+A" ? all : sample.mid(18, 29);
        Page page(all);
        const QScopedValueRollback<qint64> limit(BlockView::copyLimit, 10);
        const QScopedValueRollback<qsizetype> pieces(BlockView::pieceUnits, 2);
        QGuiApplication::clipboard()->clear();
        page.keys(keys);
        DialogAnswerer answers;
        answers.pressButton(answer);
        if (answer == "Save")
            answers.chooseFile(target);
        if (answer == "Save" && link) // the chooser asks before a name is taken
            answers.pressButton("&Yes");
        page.keys("Ctrl+C");
        VERIFY_DIALOGS(answers);
        QVERIFY(answers.seen().value(0).text.startsWith(
            QString("The selection holds %1 MiB of text").arg(selected.size() >> 20)));
        QCOMPARE(QGuiApplication::clipboard()->text(), "");
        QCOMPARE(dir.read("selection.txt"),
                 answer == "Save" ? selected.toUtf8() : QByteArray(link ? "keep" : ""));
        QCOMPARE(dir.read("victim"), QByteArray(link ? "keep" : ""));
    }
};

QTEST_MAIN(TestBlockView)
#include "test_blockview.moc"
