// A report of one very long line (500 MB unless told otherwise) opened on
// the browser's page and scrolled sideways to its end (bench_find searches
// such a line). Prints each step's time, the longest the window went without
// answering, and the memory the page added against the report's size, next
// to the goals.
//
// Built optimised in a folder of its own (the release preset's has the
// benchmarks off), from a fresh clone; it writes only to a temporary folder:
//     scripts/install-deps build
//     cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON
//     cmake --build build-bench --target bench_longline
//     QT_QPA_PLATFORM=offscreen build-bench/bin/bench_longline [MEGABYTES [RUNS]]
// Each run is a process of its own; figures are medians of RUNS (default 3).
#include "benchsupport.h"
#include "blockview.h"
#include "residentmemory.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <functional>

namespace
{

void writeReport(const QString& path, qint64 bytes)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(QByteArray("  MODE SHAPES, a line of the heading\n").repeated(9));
    const QByteArray chunk = QByteArray(" 1.23456789E+02 -9.8765E-03").repeated(1 << 15);
    for (qint64 left = bytes - 4096; left > 0; left -= chunk.size())
        file.write(chunk.constData(), std::min<qint64>(left, chunk.size()));
    file.write(QByteArray(4096, 'x') + "\n");
}

double timed(Watch& watch, const std::function<void()>& step)
{
    QElapsedTimer timer;
    timer.start();
    watch.sinceTick.restart();
    step();
    QCoreApplication::processEvents(); // the paint it asked for
    return double(timer.nsecsElapsed()) / 1e6;
}

// One open in this process: prints open, Ctrl+End, drag, longest
// step (ms), memory growth (x the report), and whether the ends were seen.
int runCase(const QString& path)
{
    const double size = double(QFile(path).size());
    { // fonts, styles and the platform, before anything is measured
        BlockView warm;
        warm.show();
        QCoreApplication::processEvents();
    }
    Watch watch;
    resetPeak();
    const qint64 before = statusKiB("VmRSS:");
    BlockView* view = nullptr;
    const double open = timed(
        watch, [&] { view = openReportPage(path, QSize(900, 600))->findChild<BlockView*>(); });
    QKeyEvent end(QEvent::KeyPress, Qt::Key_End, Qt::ControlModifier);
    const double toEnd = timed(watch, [&] { QApplication::sendEvent(view, &end); });
    const bool endShown = view->viewport()->rect().contains(view->cursorRect());
    QScrollBar* bar = view->horizontalScrollBar();
    const double drag = timed(watch, [&] { bar->setValue(bar->maximum() / 2); });
    const double grown = double(statusKiB("VmHWM:") - before) * 1024 / size;
    std::printf("%.3f %.3f %.3f %.3f %.3f %d\n", open, watch.longest, toEnd, drag, grown,
                int(endShown));
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const Bench bench(argc, argv);
    const QStringList& args = bench.args;
    if (args.value(0) == "--case")
        return runCase(args.value(1));
    const qint64 megabytes = bench.number(0, 500);
    const int runs = int(bench.number(1, 3));
    QTemporaryDir dir;
    const QString path = dir.filePath("report.rpt");
    writeReport(path, megabytes << 20);
    const auto f = runFigures<6>({"--case", path}, runs);
    std::printf("%lld MB on one line; medians of %d runs (least-most), each in a process of "
                "its own\n",
                static_cast<long long>(megabytes), runs);
    const auto line = [](const char* what, const Figure& figure, const char* goal, bool met) {
        std::printf("%-52s %-28s %-12s %s\n", what, figure.text().constData(), goal,
                    met ? "met" : "MISSED");
    };
    line("open to first paint, ms", f[0], "", true);
    line("the longest step of the window, ms", f[1], "<= 100 ms", f[1].most() <= 100);
    line("Ctrl+End to the line's end, ms", f[2], "<= 100 ms", f[2].most() <= 100 && f[5].least());
    line("scroll bar dragged to the middle, ms", f[3], "<= 100 ms", f[3].most() <= 100);
    line("memory growth, x the report", f[4], "<= 1.25x", f[4].most() <= 1.25);
    return 0;
}
