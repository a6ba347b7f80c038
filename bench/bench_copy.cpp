// Select all and copy on big pages. Below the clipboard's bound (64 MB of
// text) the copy's peak memory against the selection; above it, on a page of
// 10,000,000 lines (1.1 GB), the time until the offer to save the selection
// is taken and the file written, and the memory that adds. Printed next to
// the goals.
//
// Built optimised in a folder of its own (the release preset's has the
// benchmarks off), from a fresh clone; it writes only to a temporary folder:
//     scripts/install-deps build
//     cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON
//     cmake --build build-bench --target bench_copy
//     QT_QPA_PLATFORM=offscreen build-bench/bin/bench_copy [LINES [RUNS]]
// The big page's lines, default 10000000; each case runs RUNS times (default
// 3) in a process of its own and prints its median and spread.
#include "benchsupport.h"
#include "blockview.h"
#include "dialoganswerer.h"
#include "residentmemory.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTemporaryDir>

#include <cstdio>

namespace
{

struct Copied {
    double ms, peakMb, selectionMb;
};

// Select all and copy on a shown page of so many lines of Mode Shapes, or
// of one line that holds them all.
Copied copyAll(qint64 lines, bool oneLine = false)
{
    BlockText text;
    text.reserve(qsizetype(lines * 112));
    char line[160];
    if (oneLine) {
        QByteArray all;
        all.reserve(qsizetype(lines * 112));
        for (qint64 i = 0; i < lines; ++i)
            all.append(line, modeShapesLine(line, sizeof line, i)).append(' ');
        text.appendLine(all.constData(), all.size());
        lines = 1;
    } else {
        for (qint64 i = 0; i < lines; ++i)
            text.appendLine(line, modeShapesLine(line, sizeof line, i));
    }
    BlockView view;
    view.setBlockText(std::move(text));
    view.resize(900, 600);
    view.show();
    QCoreApplication::processEvents();
    view.selectAll();
    const double selectionMb = double(view.blockText().byteCount() + lines) / 1048576;
    resetPeak();
    const qint64 before = statusKiB("VmRSS:");
    QElapsedTimer timer;
    timer.start();
    view.copy();
    return {double(timer.nsecsElapsed()) / 1e6, double(statusKiB("VmHWM:") - before) / 1024,
            selectionMb};
}

// One copy in this process: its time, peak growth and selection, in MB.
int runCase(const QString& which, qint64 lines)
{
    QTemporaryDir dir;
    DialogAnswerer answers; // the offer to save taken, the file named
    if (which == "big")
        answers.pressButton("Save").chooseFile(dir.filePath("selection.txt"));
    const Copied copied = copyAll(which == "big" ? lines : 550000, which == "single");
    double saved = 1;
    if (which == "big")
        saved = QFileInfo(dir.filePath("selection.txt")).size() ==
                qint64(copied.selectionMb * 1048576 + 0.5);
    std::printf("%.3f %.3f %.3f %.0f\n", copied.ms, copied.peakMb, copied.selectionMb, saved);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const Bench bench(argc, argv);
    const QStringList& args = bench.args;
    if (args.value(0) == "--case")
        return runCase(args.value(1), args.value(2).toLongLong());
    const qint64 lines = bench.number(0, 10000000);
    const int runs = int(bench.number(1, 3));
    std::printf("medians of %d runs (least-most)\n", runs);
    for (const char* which : {"many", "single"}) {
        const auto f = runFigures<4>({"--case", which, QString::number(lines)}, runs);
        Figure ratio;
        for (qsizetype i = 0; i < f[1].values.size(); ++i)
            ratio.values << f[1].values[i] / f[2].values[i];
        std::printf("copy %.0f MB %s (under the bound): %s ms; peak memory growth %s x the "
                    "selection (goal <= 3x: %s)\n",
                    f[2].median(), which[0] == 'm' ? "of many short lines" : "in one line",
                    f[0].text().constData(), ratio.text("%.2f").constData(),
                    ratio.most() <= 3 ? "met" : "MISSED");
    }
    const auto big = runFigures<4>({"--case", "big", QString::number(lines)}, runs);
    std::printf("copy %.0f MB (over the bound), offered and saved to a file instead: %s ms, "
                "saved whole %s; peak memory growth %s MB\n",
                big[2].median(), big[0].text("%.0f").constData(), big[3].least() > 0 ? "yes" : "NO",
                big[1].text().constData());
    return 0;
}
