// Lines of megabytes on the block page, made at random from a fixed seed:
// read a buffer at a time and held once, sliced as a whole decode would
// give them, painted and hit inside the line wherever the view is scrolled,
// reached to their end past 2^31 pixels, searched across a window's edge,
// and no step taking more than a bound of memory.
#include "blockreader.h"
#include "blockview.h"
#include "residentmemory.h"

#include <QAccessible>
#include <QBuffer>
#include <QFontDatabase>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTest>

namespace
{

constexpr qsizetype mib = qsizetype(1) << 20;

// size UTF-16 units of characters from the pool, with the needle put at
// first and near the end.
QString makeLine(const QString& pool, const QString& needle, qsizetype size, qsizetype first)
{
    QRandomGenerator random(20261125);
    const QList<uint> characters = pool.toUcs4();
    QString line;
    line.reserve(size + 1);
    while (line.size() < size)
        line += QChar::fromUcs4(characters[random.bounded(int(characters.size()))]);
    if (line.size() > size) // not half a pair at the end
        line.replace(size - 1, 2, "a");
    for (qsizetype at : {first, size - 100})
        if (at > 0 && at + needle.size() <= size)
            line.replace(at, needle.size(), needle);
    return line;
}

} // namespace

class TestLongLines : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QAccessible::setActive(true); }

    void line_data()
    {
        QTest::addColumn<QString>("pool");   // the characters a line is made of
        QTest::addColumn<qsizetype>("size"); // in UTF-16 units
        QTest::addColumn<int>("pixels");     // the font's size
        const QString wide = "ab \t\u00E9\u20AC\u5B57\U0001D11E"; // a clef: a pair of units
        // clang-format off
        QTest::newRow("ASCII, a CR at the buffer's edge") << "abc 1.5E-03\t" << 2 * mib - 1 << 12;
        QTest::newRow("accents, euro, CJK, a clef")       << wide           << 3 * mib / 2 << 12;
        QTest::newRow("wider than 2^31 pixels")           << "0123456789"  << 12 * mib     << 400;
        // clang-format on
    }

    void line()
    {
        QFETCH(QString, pool);
        QFETCH(qsizetype, size);
        QFETCH(int, pixels);
        const bool ascii = QStringView(pool).toLatin1() == pool.toUtf8();
        const QString needle = ascii ? "NEEDLE" : "NEEDLE\u00E9";
        // In plain ASCII the search runs in the bytes; elsewhere in windows
        // of a million units, whose first edge the needle lies across.
        const qsizetype first = ascii ? mib + 10 : mib - 3;
        QString content = makeLine(pool, needle, size, first);
        // A CR lone inside where a buffer ends, and one before the line feed;
        // a tab just before a run's edge.
        constexpr int edge = 3 * 1024;
        if (ascii) {
            content[mib - 1] = '\r';
            content[edge - 2] = '\t';
        }
        QByteArray file = content.toUtf8() + "\r\nnext\n";
        QBuffer buffer(&file);
        buffer.open(QIODevice::ReadOnly);
        resetPeak();
        [[maybe_unused]] const qint64 before = residentKiB();
        BlockText text = BlockReader(0).read(buffer, file.size());
        // Held once, beside a buffer of a megabyte (ASan's quarantine keeps
        // what was freed, so memory is measured without it).
        QVERIFY2(text.memoryUse() < file.size() + 8192, "the line is held once");
#ifndef __SANITIZE_ADDRESS__
        const qint64 readGrowth = (statusKiB("VmHWM:") - before) << 10;
        QVERIFY2(readGrowth <= text.memoryUse() + 2 * mib, qPrintable(QString::number(readGrowth)));
#endif
        QCOMPARE(text.lineCount(), 2);
        QVERIFY(text.lineView(0) == content.toUtf8());
        QCOMPARE(text.lineLength(0), content.size());
        QRandomGenerator random(7);
        for (int i = 0; i < 200; ++i) {
            const qsizetype column = random.bounded(int(size));
            const qsizetype length = random.bounded(6000);
            QCOMPARE(text.lineSlice(0, column, length), content.mid(column, length));
        }

        BlockView view;
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont); // as the page's
        font.setPixelSize(pixels);
        view.setFont(font);
        view.setBlockText(std::move(text));
        view.resize(600, 300);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QAccessibleTextInterface* face =
            QAccessible::queryAccessibleInterface(&view)->textInterface();
        QScrollBar* bar = view.horizontalScrollBar();
        const QRect inside = view.viewport()->rect();
        for (int i = 0; i < 40; ++i) { // anywhere, including the end
            bar->setValue(i == 0 ? bar->maximum() : random.bounded(bar->maximum() + 1));
            view.grab();
            const QPoint at(random.bounded(inside.width()), 2 + random.bounded(12));
            QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, at);
            QVERIFY(face->cursorPosition() >= 0 && face->cursorPosition() <= size);
            if (ascii && view.cursorRect().x() < inside.width() - view.fontMetrics().maxWidth())
                QVERIFY2(qAbs(view.cursorRect().x() - at.x()) <= view.fontMetrics().maxWidth(),
                         "the caret lands where the line was hit");
        }
        // Across a run's edge every character takes a column, the tab too:
        // the runs neither overlap nor leave a gap.
        const int column = view.fontMetrics().horizontalAdvance('0');
        face->setCursorPosition(edge); // in sight
        for (int at = edge - 4; ascii && at < edge + 4; ++at)
            QVERIFY(qAbs(face->characterRect(at + 1).x() - face->characterRect(at).x() - column) <=
                    1);
        QTest::keyClick(&view, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(face->cursorPosition(), size + 1 + 4); // behind "next"
        QTest::keyClick(&view, Qt::Key_Up);
        QTest::keyClick(&view, Qt::Key_End, Qt::ShiftModifier);
        QCOMPARE(face->cursorPosition(), size);
        QVERIFY2(inside.contains(view.cursorRect().topLeft()), "the line's end is in sight");
        view.grab();
        // Back from the end, then on from the start across the window's edge.
        int start = 0, end = 0;
        QVERIFY(view.find(needle, true));
        face->selection(0, &start, &end);
        QCOMPARE(start, size - 100);
        QTest::keyClick(&view, Qt::Key_Home, Qt::ControlModifier);
        QVERIFY(view.find(needle));
        face->selection(0, &start, &end);
        QCOMPARE(start, size > first ? first : size - 100);
#ifndef __SANITIZE_ADDRESS__
        const qint64 grownMib = (statusKiB("VmHWM:") - before) >> 10;
        QVERIFY2(grownMib <= qint64(file.size() >> 20) + 48, qPrintable(QString::number(grownMib)));
#endif
    }

    // A line read in parts is indexed as it grows; a part may end inside a
    // character just where a chunk would end (three-byte euros: chunks end
    // at multiples of 4,098 bytes, so at 4 x 4,098 + 4,096 a chunk's end is
    // not yet known).
    void lineInParts()
    {
        const QString whole = QString(20000, QChar(0x20AC));
        const QByteArray bytes = whole.toUtf8();
        for (const qsizetype cut : {4 * 4098 + 4096, 4 * 4098 + 4097, 5 * 4098}) {
            BlockText text;
            text.appendLine(bytes.constData(), 3);
            text.appendToLastLine(bytes.constData() + 3, cut - 3);
            text.appendToLastLine(bytes.constData() + cut, bytes.size() - cut);
            QCOMPARE(text.lineLength(0), whole.size());
            QCOMPARE(text.lineSlice(0, 5000, 3000), whole.mid(5000, 3000));
            QVERIFY(text.line(0) == whole);
        }
    }
};

QTEST_MAIN(TestLongLines)
#include "test_longlines.moc"
