// Find from the find bar, the user's road (Ctrl+F, the text typed, Enter),
// on three texts: 10,000,000 lines of 114 bytes with the match on the last
// line, one line of 500 MB of plain ASCII with the match near its end, and
// the same line with one non-ASCII character near its start; then Shift+Enter
// from the end, the match near the start, on the first and the last. For
// each: the time from Enter until the caret is on the match and the longest
// the event loop went without turning meanwhile, medians and spread of
// several runs, beside a floor measured in the same run: memchr of a byte
// that does not occur, over the same stored bytes.
//
// Built optimised in a folder of its own (the release preset's has the
// benchmarks off), from a fresh clone; it writes nothing:
//     scripts/install-deps build
//     cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON
//     cmake --build build-bench --target bench_find
//     QT_QPA_PLATFORM=offscreen build-bench/bin/bench_find [LINES [MEGABYTES [RUNS]]]
// Smaller sizes (say 100000 5) run in seconds.
#include "benchsupport.h"
#include "blockview.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include <cstring>

namespace
{

const QByteArray needle = "NEEDLE-AT-THE-END";

// The match on the last line, or on the first.
BlockText manyLines(qint64 lines, bool first)
{
    BlockText text;
    text.reserve(lines * 114);
    const QByteArray match = QByteArray(97, ' ') + needle;
    char line[160];
    for (qint64 i = 0; i < lines; ++i) {
        const int size = modeShapesLine(line, sizeof line, i);
        std::memcpy(line + size, "    ", 4);
        if (i == (first ? 0 : lines - 1))
            text.appendLine(match.constData(), match.size());
        else
            text.appendLine(line, size + 4);
    }
    return text;
}

// The match 2 KiB from the end, or from the start; one "é" 1 KiB after the
// start when asked.
BlockText oneLine(qint64 bytes, bool nonAscii, bool first)
{
    const QByteArray chunk = QByteArray(" 1.23456789E+02 -9.8765E-03").repeated(1 << 15);
    QByteArray line;
    line.reserve(bytes);
    while (line.size() < bytes)
        line.append(chunk.constData(), std::min<qsizetype>(chunk.size(), bytes - line.size()));
    line.replace(first ? 2048 : bytes - 2048, needle.size(), needle);
    if (nonAscii)
        line.replace(1024, 2, "\xC3\xA9");
    BlockText text;
    text.appendLine(line.constData(), line.size());
    return text;
}

void rows(const char* what, const Figure& figure, const char* goal, double most)
{
    std::printf("  %-40s %-28s ms %-10s %s\n", what, figure.text().constData(), goal,
                most <= 0                 ? ""
                : figure.median() <= most ? "met"
                                          : "MISSED");
}

// Runs of Enter in the find bar from the text's start (Shift+Enter from its end when
// backward), until the caret is on the match.
void measure(const char* name, BlockText text, int runs, double goal, bool backward = false)
{
    BlockView view;
    view.resize(900, 600);
    view.setBlockText(std::move(text));
    view.show();
    QCoreApplication::processEvents();
    QTest::keyClick(&view, Qt::Key_F, Qt::ControlModifier);
    auto* edit = view.findChild<QLineEdit*>("find text");
    QTest::keyClicks(edit, QString::fromLatin1(needle).toLower());
    const QByteArrayView stored(view.blockText().lineView(0).data(), view.blockText().byteCount());
    Figure found, steps, floor;
    Watch watch;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        const bool absent = std::memchr(stored.data(), 1, size_t(stored.size())) == nullptr;
        floor.values << (absent ? double(timer.nsecsElapsed()) / 1e6 : -1);
        QTest::keyClick(&view, backward ? Qt::Key_End : Qt::Key_Home, Qt::ControlModifier);
        QCoreApplication::processEvents();
        watch.longest = 0;
        watch.sinceTick.restart();
        timer.restart();
        QTest::keyClick(edit, Qt::Key_Return, backward ? Qt::ShiftModifier : Qt::NoModifier);
        while (view.selectedText() != needle && timer.elapsed() < 600'000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        found.values << (view.selectedText() == needle ? double(timer.nsecsElapsed()) / 1e6 : -1);
        steps.values << std::max(watch.longest, double(watch.sinceTick.nsecsElapsed()) / 1e6);
    }
    std::printf("%s; medians of %d runs (least-most)\n", name, runs);
    rows("Enter to the caret on the match", found, goal > 1000 ? "<= 3 s" : "<= 1 s", goal);
    rows("longest step of the event loop", steps, "<= 100 ms", 100);
    rows("floor: memchr over the bytes", floor, "", 0);
}

} // namespace

int main(int argc, char** argv)
{
    const Bench bench(argc, argv);
    const qint64 lines = std::max<qint64>(2, bench.number(0, 10000000));
    const qint64 megabytes = bench.number(1, 500);
    const int runs = int(bench.number(2, 3));
    std::printf("(-1: not found)\n");
    const qint64 bytes = megabytes * 1000 * 1000;
    measure(qPrintable(QString("%1 lines, the match on the last").arg(lines)),
            manyLines(lines, false), runs, 1000);
    measure(qPrintable(QString("one line of %1 MB, plain ASCII").arg(megabytes)),
            oneLine(bytes, false, false), runs, 1000);
    measure(qPrintable(QString("one line of %1 MB, one non-ASCII character").arg(megabytes)),
            oneLine(bytes, true, false), runs, 3000);
    // Back from the end, the match at the start.
    measure(qPrintable(QString("back: %1 lines, the match on the first").arg(lines)),
            manyLines(lines, true), runs, 1000, true);
    measure(qPrintable(QString("back: one line of %1 MB, one non-ASCII").arg(megabytes)),
            oneLine(bytes, true, true), runs, 3000, true);
    return 0;
}
