// A report of one very long line (500 MB unless told otherwise) opened on
// the browser's page, scrolled sideways to its end and searched near its
// end. Prints each step's time, the longest the window went without
// answering, and the memory the page added against the report's size, next
// to the goals.
//
// Built optimised in a folder of its own (the release preset's has the
// benchmarks off), from a fresh clone; it writes only to a temporary folder:
//     scripts/install-deps build
//     cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON
//     cmake --build build-bench --target bench_longline
//     QT_QPA_PLATFORM=offscreen build-bench/bin/bench_longline [MEGABYTES]
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

const QByteArray needle = "NEEDLE-NEAR-THE-END";

void writeReport(const QString& path, qint64 bytes)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(QByteArray("  MODE SHAPES, a line of the heading\n").repeated(9));
    const QByteArray chunk = QByteArray(" 1.23456789E+02 -9.8765E-03").repeated(1 << 15);
    for (qint64 left = bytes - 4096; left > 0; left -= chunk.size())
        file.write(chunk.constData(), std::min<qint64>(left, chunk.size()));
    file.write(QByteArray(2048, 'x') + needle + QByteArray(2048 - needle.size(), 'y') + "\n");
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

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const qint64 megabytes = std::max(1LL, app.arguments().value(1, "500").toLongLong());
    QTemporaryDir dir;
    const QString path = dir.filePath("report.rpt");
    writeReport(path, megabytes << 20);
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
    bool found = false; // back from the caret, at the end since Ctrl+End
    const double find =
        timed(watch, [&] { found = view->find(needle, true) && view->selectedText() == needle; });
    const double grown = double(statusKiB("VmHWM:") - before) * 1024 / size;
    std::printf("%lld MB on one line\n", static_cast<long long>(megabytes));
    row("open, first paint", open, "ms", "", true);
    row("Ctrl+End to the line's end", toEnd, "ms", "<= 100 ms", toEnd <= 100 && endShown);
    row("scroll bar dragged to the middle", drag, "ms", "<= 100 ms", drag <= 100);
    row("find near the end", find, "ms", "<= 100 ms", find <= 100 && found);
    row("longest step of the GUI", watch.longest, "ms", "<= 100 ms", watch.longest <= 100);
    row("memory growth against the report", grown, "x", "<= 1.25x", grown <= 1.25);
    return 0;
}
