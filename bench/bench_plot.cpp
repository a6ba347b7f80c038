// The plot of a long Mode Shapes page, made by the browser's own road: CPU
// time from the switch to the plot until its first paint, and of a real
// redraw after a resize (laid out and painted for the new size, not the
// stretched picture), each the median of several runs, printed next to the
// goal and next to a baseline of the same run: reading the two plotted
// numbers of every line once, the least any plot of the page must do.
//
//     bench_plot [LINES] [RUNS]      default: 1000000 3
#include "benchsupport.h"
#include "blockchartview.h"
#include "blockpage.h"
#include "blockview.h"

#include <QApplication>
#include <QChart>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <ctime>
#include <functional>
#include <vector>

namespace
{

double cpuSeconds()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

// Counts the paints of the widget it watches.
struct Probe : QObject {
    int paints = 0;
    bool eventFilter(QObject*, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint;
        return false;
    }
};

// CPU seconds from the action until the watched widget has painted.
double untilPainted(Probe& probe, const std::function<void()>& action)
{
    const double start = cpuSeconds();
    const int since = probe.paints;
    action();
    QElapsedTimer wall;
    wall.start();
    while (probe.paints <= since && wall.elapsed() < 60000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return cpuSeconds() - start;
}

} // namespace

int main(int argc, char** argv)
{
    const Bench bench(argc, argv);
    const qint64 lines = bench.number(0, 1000000);
    const int runs = int(bench.number(1, 3));
    QTemporaryDir dir;
    const QString path = dir.filePath("report.rpt");
    writeModeShapesReport(path, lines, true);
    std::printf("%lld lines of Mode Shapes in 20 modes; CPU time, median of %d runs\n",
                static_cast<long long>(lines), runs);

    Figure baseline, shown, redrawn;
    for (int run = 0; run < runs; ++run) {
        QWidget* window = openReportPage(path, QSize(1100, 700));
        auto* page = window->findChild<BlockPage*>();
        if (!page) {
            std::fputs("no plot on the page\n", stderr);
            return 1;
        }
        const BlockColumns columns(page->textView()->blockText(), blockLayouts[7]);
        const double start = cpuSeconds();
        double sum = 0, value;
        for (qsizetype line = 0; line < columns.lineCount(); ++line)
            for (int column : {0, 1})
                sum += columns.number(line, column, value) ? value : 0;
        baseline.values << (cpuSeconds() - start + (sum == 0.5 ? 1e-9 : 0));

        Probe probe;
        shown.values << (untilPainted(probe, [&] {
            page->showView(BlockPage::Plot);
            page->plot()->chartView()->viewport()->installEventFilter(&probe);
        }));
        BlockChartView* view = page->plot()->chartView();
        for (const QSize size : {QSize(1300, 800), QSize(900, 600), QSize(1200, 700)})
            redrawn.values << (untilPainted(probe, [&] {
                window->resize(size);
                QCoreApplication::processEvents();
                view->settle(); // laid out and drawn anew, not the stretched picture
            }));
        delete window;
    }
    std::printf("%-40s %10s %-3s %-20s\n", "step", "figure", "", "goal");
    row("Baseline: read x and y of every line", baseline.median(), "s", "(no goal)", true);
    row("Plot shown: to its first paint", shown.median(), "s", "<= 0.3 s", shown.median() <= 0.3);
    row("Plot resized: redrawn for the new size", redrawn.median(), "s", "<= 0.1 s",
        redrawn.median() <= 0.1);
    return 0;
}
