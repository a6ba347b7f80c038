// Opens block reports of growing length two ways and prints what a user
// waits for: the browser's page (ZEBReport::showBlock) and the plain way
// (QTextStream::readLine into one QString, then a read-only QTextEdit without
// wrapping). Each case runs in a child process of its own, so that its peak
// memory is its alone.
//
// Built optimised in a folder of its own (the release preset's has the
// benchmarks off), from a fresh clone; it writes only to a temporary folder:
//     scripts/install-deps build
//     cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON
//     cmake --build build-bench --target bench_blockview
//     QT_QPA_PLATFORM=offscreen build-bench/bin/bench_blockview [LINES]
// Default: 10000, 100000 and 1000000 in turn.
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

#include <algorithm>
#include <cstdio>
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
    // End goes to the bottom in both.
    QKeyEvent end(QEvent::KeyPress, Qt::Key_End, Qt::NoModifier);
    const double toEnd = timed(probe, [&] { QApplication::sendEvent(area, &end); });
    const bool endShown = lastLineShown(area);
    QScrollBar* bar = area->verticalScrollBar();
    timed(probe, [&] { bar->setValue(0); });
    const double drag = timed(probe, [&] { bar->setValue(bar->maximum()); });
    const bool dragShown = lastLineShown(area);
    const double resize = timed(probe, [&] { area->resize(1100, 700); });
    const double peakMb = double(statusKiB("VmHWM:") - before) / 1024;
    std::printf("%9.1f %8.1f %4s %8.1f %4s %8.1f %9.1f %6.2f %9lld %6s\n", open, toEnd,
                endShown ? "yes" : "NO", drag, dragShown ? "yes" : "NO", resize, peakMb,
                peakMb * 1048576 / double(QFile(path).size()), static_cast<long long>(lines),
                page ? "page" : "plain");
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

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    if (args.value(0) == "--case") {
        warmUp();
        return runCase(args.value(1), args.value(2).toLongLong(), args.value(3) == "page");
    }
    const QList<qint64> sizes = args.isEmpty() ? QList<qint64>{10000, 100000, 1000000}
                                               : QList<qint64>{std::max(1LL, args[0].toLongLong())};
    QTemporaryDir dir;
    std::printf("%9s %8s %4s %8s %4s %8s %9s %6s %9s %6s\n", "open ms", "end ms", "end", "drag ms",
                "drag", "resize", "peak MB", "x file", "lines", "way");
    for (qint64 lines : sizes) {
        const QString path = dir.filePath(QString("report%1.rpt").arg(lines));
        writeReport(path, lines);
        QList<double> opens;
        for (const char* way : {"page", "plain"}) {
            QProcess child;
            child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            child.start(QCoreApplication::applicationFilePath(),
                        {"--case", path, QString::number(lines), way});
            child.waitForFinished(-1);
            // The page's road says what it runs; the row is the last line.
            QByteArray out = child.readAllStandardOutput();
            out.chop(out.endsWith('\n') ? 1 : 0);
            const QByteArray row = out.mid(out.lastIndexOf('\n') + 1) + "\n";
            child.readAllStandardOutput().trimmed().split('\n').last() + "\n";
            std::fputs(row.constData(), stdout);
            opens << row.simplified().split(' ')[0].toDouble();
        }
        std::printf("%9.0fx faster to the first answer, %.1f MB file\n", opens[1] / opens[0],
                    double(QFile(path).size()) / 1048576);
        std::fflush(stdout);
    }
    return 0;
}
