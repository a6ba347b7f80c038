// Switches a long Mode Shapes page, made by the browser's own road, to its
// table and its plot, and prints what a user waits for next to the goals:
// the table's first rows, Ctrl+End to its last row, a numeric and a text
// sort, a CSV export, the plot, a resize of the plot, and the memory each
// step adds. Repeated steps print the median of their runs.
//
//     bench_blocktable [LINES]      default: 1000000
#include "benchsupport.h"
#include "blockchartview.h"
#include "blockpage.h"
#include "blocktablemodel.h"
#include "blocktableview.h"
#include "blockview.h"
#include "residentmemory.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace
{

// Counts the paints of the widgets it watches.
struct Probe : QObject {
    int paints = 0;
    bool eventFilter(QObject*, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint;
        return false;
    }
};

// Milliseconds and peak memory growth (MB) from the action until a watched
// widget has painted.
struct Step {
    double ms, mb;
};
Step measured(Probe& probe, const std::function<void()>& action)
{
    resetPeak();
    const qint64 before = statusKiB("VmRSS:");
    QElapsedTimer timer;
    timer.start();
    const int since = probe.paints;
    action();
    while (probe.paints <= since && timer.elapsed() < 60000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return {double(timer.nsecsElapsed()) / 1e6, double(statusKiB("VmHWM:") - before) / 1024};
}

// The median of several runs of a measurement.
double medianOf(int runs, const std::function<double()>& run)
{
    Figure figure;
    for (int i = 0; i < runs; ++i)
        figure.values << run();
    return figure.median();
}

void press(QWidget* widget, int key, Qt::KeyboardModifiers modifiers = {})
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QCoreApplication::sendEvent(widget, &event);
}

// From the top, Page Down (the baseline) and Ctrl+End, each to its paint.
void walkTable(Probe& probe, BlockTableView* table)
{
    const auto top = [table] {
        table->setCurrentIndex(table->model()->index(0, 0));
        table->scrollToTop();
        QCoreApplication::processEvents();
    };
    const auto fromTop = [&probe, &top, table](int key, Qt::KeyboardModifiers modifiers) {
        return medianOf(5, [&] {
            top();
            return measured(probe, [&] { press(table, key, modifiers); }).ms;
        });
    };
    const double page = fromTop(Qt::Key_PageDown, {});
    row("Table: Page Down (baseline)", page, "ms", "(no goal)", true);
    const double end = fromTop(Qt::Key_End, Qt::ControlModifier);
    row("Table: Ctrl+End to the last row", end, "ms", "<= 100 ms", end <= 100);
}

// The page's lines cut in two, the ID and five components as one cell of
// text, sorted by it; the numeric sort by dz above is its baseline.
void sortWords(const BlockText& text)
{
    const BlockLayout halves = {2, 9, {5 + 5 * 18, 18}, {}}; // outlives the model
    BlockTableModel model(text, halves);
    const double ms = medianOf(5, [&model] {
        QElapsedTimer timer;
        timer.start();
        model.sort(0);
        return double(timer.nsecsElapsed()) / 1e6;
    });
    row("Sort by a text column", ms, "ms", "<= 1000 ms", ms <= 1000);
}

// Peak memory growth against the size of the file written.
void exportTable(BlockTableView* table, const QString& path)
{
    const double x = medianOf(3, [&] {
        resetPeak();
        const qint64 before = statusKiB("VmRSS:");
        QString error;
        if (!table->exportCsv(path, error))
            std::fprintf(stderr, "export failed: %s\n", qPrintable(error));
        return double(statusKiB("VmHWM:") - before) * 1024 /
               double(std::max<qint64>(1, QFile(path).size()));
    });
    row("Export CSV: memory growth", x, "x", "<= 0.1x the CSV", x <= 0.1);
}

BlockPage* openPage(const QString& path)
{
    return openReportPage(path, QSize(1100, 700))->findChild<BlockPage*>();
}

} // namespace

int main(int argc, char** argv)
{
    const Bench bench(argc, argv);
    const qint64 lines = bench.number(0, 1000000);
    QTemporaryDir dir;
    const QString path = dir.filePath("report.rpt");
    writeModeShapesReport(path, lines, false);
    const double reportMb = double(QFile(path).size()) / 1048576;
    BlockPage* page = openPage(path);
    if (!page) {
        std::fputs("no table and plot on the page\n", stderr);
        return 1;
    }
    std::printf("%lld lines of Mode Shapes, report %.1f MB\n", static_cast<long long>(lines),
                reportMb);
    std::printf("%-34s %10s %-6s %-22s\n", "step", "figure", "", "goal");

    Probe probe;
    const Step table = measured(probe, [&] {
        page->showView(BlockPage::Table);
        page->tableView()->viewport()->installEventFilter(&probe);
    });
    row("Table: first rows on screen", table.ms, "ms", "<= 100 ms", table.ms <= 100);
    row("Table: memory growth", table.mb / reportMb, "x", "<= 0.1x the report",
        table.mb <= 0.1 * reportMb);

    const Step sort =
        measured(probe, [&] { page->tableView()->sortByColumn(3, Qt::AscendingOrder); });
    const double perRow = sort.mb * 1048576 / double(lines);
    row("Sort by dz (numeric)", sort.ms, "ms", "<= 1000 ms", sort.ms <= 1000);
    row("Sort: memory growth a row", perRow, "B", "<= 16 B", perRow <= 16);
    walkTable(probe, page->tableView());
    page->tableView()->showLineOrder();
    exportTable(page->tableView(), dir.filePath("table.csv"));
    QFile::remove(dir.filePath("table.csv"));
    sortWords(page->textView()->blockText());

    const Step plot = measured(probe, [&] {
        page->showView(BlockPage::Plot);
        page->plot()->chartView()->viewport()->installEventFilter(&probe);
    });
    row("Plot shown", plot.ms, "ms", "<= 300 ms", plot.ms <= 300);
    row("Plot: memory growth", plot.mb / reportMb, "x", "(no goal)", true);

    QWidget* window = page->window();
    // The plot settles first (the points for its width follow its first
    // paint, its picture is kept a moment later), as it has when a user
    // starts to drag the window's edge.
    QElapsedTimer settling;
    settling.start();
    while (settling.elapsed() < 1500)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);

    const Step resize = measured(probe, [&] { window->resize(1300, 800); });
    row("Plot resized: first paint", resize.ms, "ms", "<= 50 ms", resize.ms <= 50);
    // The chart is laid out for the new size once it has held still.
    const Step refined = measured(probe, [] {});
    row("Plot resized: redrawn for the width", resize.ms + refined.ms, "ms", "(no goal)", true);
    return 0;
}
