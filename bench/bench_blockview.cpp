// Opens block reports of growing length two ways and prints what a user
// waits for: the browser's page (ZEBReport::showBlock) and the plain way
// (QTextStream::readLine into one QString, then a read-only QTextEdit without
// wrapping; up to 1,000,000 lines). Beside them stands the machine's floor:
// the report read into fresh memory and every line end found, once in small
// pages and once in memory advised to take large ones; the faster median is
// the floor. Each case runs in a child process of its own, so that its
// memory is fresh and its peak its own; every figure is the median of RUNS
// runs (default 3) with their spread.
//
// Built optimised in a folder of its own (the release preset's has the
// benchmarks off), from a fresh clone; it writes only to a temporary folder:
//     scripts/install-deps build
//     cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON
//     cmake --build build-bench --target bench_blockview
//     QT_QPA_PLATFORM=offscreen build-bench/bin/bench_blockview [LINES [RUNS]]
// Default: 10000, 100000, 1000000 and 10000000 lines in turn (1.1 GB of
// report at the last; the temporary folder needs room for it).
#include "benchsupport.h"
#include "blockreader.h"
#include "blockview.h"
#include "residentmemory.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QProcess>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTextStream>

#include <sys/mman.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>

namespace
{

constexpr int headerLines = 9;

// Mode shapes after the leading lines.
void writeReport(const QString& path, qint64 lines)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(QByteArray("  MODE SHAPES, a line of the heading\n").repeated(headerLines));
    char line[160];
    for (qint64 i = 0; i < lines; ++i) {
        const int n = modeShapesLine(line, sizeof line - 1, i);
        line[n] = '\n';
        file.write(line, n + 1);
    }
}

// Counts the paints of a viewport and the keys still to reach a view.
struct Probe : QObject {
    int paints = 0;
    int keysToCome = 0;
    bool eventFilter(QObject*, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint;
        keysToCome -= event->type() == QEvent::KeyPress;
        return false;
    }
};

// Milliseconds from the action until the view has taken its keys and painted
// (a view that has nothing to change gives up after a minute).
double timed(Probe& probe, const std::function<void()>& action)
{
    QElapsedTimer timer;
    timer.start();
    const int since = probe.paints;
    action();
    while ((probe.paints <= since || probe.keysToCome > 0) && timer.elapsed() < 60000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return double(timer.nsecsElapsed()) / 1e6;
}

QAbstractScrollArea* openPage(const QString& path)
{
    return openReportPage(path, QSize(900, 600))->findChild<BlockView*>();
}

QAbstractScrollArea* openPlain(const QString& path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    QTextStream in(&file);
    QString all;
    for (int i = 0; i < headerLines; ++i)
        in.readLine();
    while (!in.atEnd())
        if (const QString line = in.readLine(); !line.isEmpty())
            all += line + "\n";
    auto* edit = new QTextEdit;
    edit->setReadOnly(true);
    edit->setLineWrapMode(QTextEdit::NoWrap);
    edit->setFont(QFont("Courier 10 Pitch", 10));
    edit->setText(all);
    return edit;
}

// Whether the last line of the report is in sight.
bool lastLineShown(QAbstractScrollArea* area)
{
    if (auto* view = qobject_cast<BlockView*>(area))
        return view->viewport()->rect().contains(view->lineRect(view->blockText().lineCount() - 1));
    auto* edit = static_cast<QTextEdit*>(area);
    const QPoint bottom(4, edit->viewport()->height() - 4);
    return edit->cursorForPosition(bottom).blockNumber() >= edit->document()->blockCount() - 2;
}

// One case in this process: prints its row of the table, the time to the
// first answer first.
int runCase(const QString& path, qint64 lines, bool page)
{
    QFile reset("/proc/self/clear_refs"); // "5" resets the peak to now
    if (reset.open(QIODevice::WriteOnly))
        reset.write("5");
    reset.close();
    const qint64 before = statusKiB("VmRSS:");
    QAbstractScrollArea* area = nullptr;
    Probe probe;
    const double open = timed(probe, [&] {
        area = page ? openPage(path) : openPlain(path);
        area->viewport()->installEventFilter(&probe);
        area->installEventFilter(&probe);
        area->resize(900, 600);
        area->show();
        probe.keysToCome = 1;
        QCoreApplication::postEvent(area, new QKeyEvent(QEvent::KeyPress, Qt::Key_Down, {}));
    });
    // Ctrl+End goes to the last line of the page; a read-only text edit
    // takes no Ctrl+End and scrolls to its end on End. It lays its document
    // out in the background, so the time runs until the last line shows (at
    // most three seconds).
    QKeyEvent end(QEvent::KeyPress, Qt::Key_End, page ? Qt::ControlModifier : Qt::NoModifier);
    const double toEnd = timed(probe, [&] {
        QApplication::sendEvent(area, &end);
        QElapsedTimer waited;
        waited.start();
        while (!lastLineShown(area) && waited.elapsed() < 3000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    });
    const bool endShown = lastLineShown(area);
    QScrollBar* bar = area->verticalScrollBar();
    timed(probe, [&] { bar->setValue(0); });
    const double drag = timed(probe, [&] { bar->setValue(bar->maximum()); });
    const bool dragShown = lastLineShown(area);
    const double peakMb = double(statusKiB("VmHWM:") - before) / 1024;
    std::printf("%9.1f %8.1f %4s %8.1f %4s %9.1f %6.2f %9lld %6s\n", open, toEnd,
                endShown ? "yes" : "NO", drag, dragShown ? "yes" : "NO", peakMb,
                peakMb * 1048576 / double(QFile(path).size()), static_cast<long long>(lines),
                page ? "page" : "plain");
    return 0;
}

// The floor: the report read into fresh memory, every line end counted.
int runFloor(const QString& path, bool large)
{
    QElapsedTimer timer;
    timer.start();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    const size_t size = size_t(file.size());
    void* mapped =
        ::mmap(nullptr, size + 1, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED)
        return 1;
    if (large)
        ::madvise(mapped, size + 1, MADV_HUGEPAGE);
    char* data = static_cast<char*>(mapped);
    qint64 got = 0;
    for (qint64 step = 1; step > 0 && size_t(got) < size; got += std::max<qint64>(step, 0))
        step = file.read(data + got, qint64(size) - got);
    qint64 lineEnds = 0;
    for (const char* at = data;
         (at = static_cast<const char*>(std::memchr(at, '\n', size_t(data + got - at)))); ++at)
        ++lineEnds;
    std::printf("%.3f %lld\n", double(timer.nsecsElapsed()) / 1e6,
                static_cast<long long>(lineEnds));
    return 0;
}

// Loads fonts, styles and the platform before the measured case.
void warmUp()
{
    BlockView view;
    QTextEdit edit("a\nb\n");
    view.show();
    edit.show();
    QCoreApplication::processEvents();
}

void printWay(const char* name, const std::array<Figure, 7>& way, double floor, double fileMb)
{
    const Figure& open = way[0];
    Figure ratio;
    for (double v : open.values)
        ratio.values << v / floor;
    std::printf("  %-10s open %s ms = %s x the floor; to the end %s ms, last line %s; drag %s ms, "
                "last line %s; peak %s MB = %.2f x the report\n",
                name, open.text().constData(), ratio.text("%.2f").constData(),
                way[1].text().constData(), way[2].least() > 0 ? "yes" : "NO",
                way[3].text().constData(), way[4].least() > 0 ? "yes" : "NO",
                way[5].text("%.0f").constData(), way[5].median() / fileMb);
}

} // namespace

int main(int argc, char** argv)
{
    const Bench bench(argc, argv);
    const QStringList& args = bench.args;
    if (args.value(0) == "--case") {
        warmUp();
        return runCase(args.value(1), args.value(2).toLongLong(), args.value(3) == "page");
    }
    if (args.value(0) == "--floor")
        return runFloor(args.value(1), args.value(2) == "large");
    const QList<qint64> sizes = args.isEmpty() ? QList<qint64>{10000, 100000, 1000000, 10000000}
                                               : QList<qint64>{bench.number(0, 1)};
    const int runs = int(bench.number(1, 3));
    QTemporaryDir dir;
    std::printf("medians of %d runs, (least-most); open: from the report on disk to the page "
                "shown and a key taken\n",
                runs);
    for (qint64 lines : sizes) {
        const QString path = dir.filePath(QString("report%1.rpt").arg(lines));
        writeReport(path, lines);
        const double fileMb = double(QFile(path).size()) / 1048576;
        Figure small, large;
        for (int run = 0; run < runs; ++run) {
            small.values << runChild({"--floor", path, "small"}).value(0);
            large.values << runChild({"--floor", path, "large"}).value(0);
        }
        const double floor = std::min(small.median(), large.median());
        std::printf("%lld lines, %.1f MB: floor %.1f ms (read into fresh memory and every line "
                    "end found: small pages %s ms, large pages %s ms)\n",
                    static_cast<long long>(lines), fileMb, floor, small.text().constData(),
                    large.text().constData());
        printWay("page", runFigures<7>({"--case", path, QString::number(lines), "page"}, runs),
                 floor, fileMb);
        if (lines <= 1000000)
            printWay("QTextEdit",
                     runFigures<7>({"--case", path, QString::number(lines), "plain"}, runs), floor,
                     fileMb);
        std::fflush(stdout);
        QFile::remove(path);
        QFile::remove(path + ".made"); // the translator's hand-over
    }
    return 0;
}
