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
//     QT_QPA_PLATFORM=offscreen build-bench/bin/bench_copy [LINES]
// The big page's lines, default 10000000.
#include "benchsupport.h"
#include "blockview.h"
#include "residentmemory.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

namespace
{

// Takes the offer to save and names the file; the progress dialog is left
// to run.
void answerWith(const QString& path)
{
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, [path] {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* box = qobject_cast<QMessageBox*>(modal))
            box->button(QMessageBox::Save)->click();
        if (auto* chooser = qobject_cast<QFileDialog*>(modal)) {
            chooser->selectFile(path);
            QMetaObject::invokeMethod(chooser, "accept");
        }
    });
    timer->start(10);
}

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

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const qint64 lines = std::max(1LL, app.arguments().value(1, "10000000").toLongLong());

    const Copied small = copyAll(550000); // about 60 MB, under the bound
    std::printf("%.0f MB selected (under the bound)\n", small.selectionMb);
    row("copy to the clipboard", small.ms, "ms", "", true);
    row("copy: peak memory against the selection", small.peakMb / small.selectionMb, "x", "<= 3x",
        small.peakMb <= 3 * small.selectionMb);
    QGuiApplication::clipboard()->clear();
    const Copied single = copyAll(550000, true);
    std::printf("%.0f MB selected in one line (under the bound)\n", single.selectionMb);
    row("copy one line: peak memory against it", single.peakMb / single.selectionMb, "x", "<= 3x",
        single.peakMb <= 3 * single.selectionMb);
    QGuiApplication::clipboard()->clear();

    QTemporaryDir dir;
    answerWith(dir.filePath("selection.txt"));
    const Copied big = copyAll(lines);
    const qint64 written = QFileInfo(dir.filePath("selection.txt")).size();
    const bool saved = written == qint64(big.selectionMb * 1048576 + 0.5);
    std::printf("%.0f MB selected (over the bound)\n", big.selectionMb);
    row("offered, saved to a file instead", big.ms, "ms", "saved", saved);
    row("save: peak memory growth", big.peakMb, "MB", "", true);
    return 0;
}
