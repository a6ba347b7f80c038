#pragma once

#include "zebreport.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <array>
#include <cstdio>

#include <unistd.h>

// What the benchmarks share: a way onto the browser's page, a line of a
// report, a watch on the event loop, and a row of results beside its goal.

// The browser's own road from the tool's end: the report at path, written
// for block 8 (nine leading lines), read back onto a page shown at size,
// progress dialog and all. The run only marks the report as its own. The
// input BASE.zeb beside it is made empty when missing and never touched
// when there: a path may be a user's, not the benchmark's own folder.
inline QWidget* openReportPage(const QString& path, QSize size)
{
    if (qEnvironmentVariableIsEmpty("OKT_ZEB2MTX")) // found, never run
        qputenv("OKT_ZEB2MTX", "/bin/true");
    const QFileInfo report(path);
    QDir::setCurrent(report.path());
    QFile(report.completeBaseName() + ".zeb").open(QIODevice::WriteOnly | QIODevice::NewOnly);
    // The report goes aside before each run, so the stand-in translator
    // hands the prepared one over as a new name, as a real one writes anew.
    const QString made = report.fileName() + ".made";
    if (!QFile::exists(made))
        QFile::rename(report.fileName(), made);
    ZEBReport::runTool = [name = report.fileName(), made](const std::string&) {
        return ::link(QFile::encodeName(made).constData(), QFile::encodeName(name).constData()) == 0
                   ? 1 << 8
                   : 0;
    };
    ZEBReport job(report.completeBaseName() + ".zeb", "1");
    auto* page = new QWidget;
    job.showBlock(page, 8);
    page->resize(size);
    page->show();
    QCoreApplication::processEvents();
    return page;
}

// Mode Shapes as the layout has them: a 5-character ID and six 18-character
// components; 20 modes of equal node count, one after the other, each under
// a heading line "Mode <n>" when asked.
inline void writeModeShapesReport(const QString& path, qint64 lines, bool headings)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(QByteArray("  MODE SHAPES, a line of the heading\n").repeated(9));
    const qint64 nodes = std::max<qint64>(1, lines / 20);
    char line[160];
    for (qint64 i = 0; i < lines; ++i) {
        const qint64 node = i % nodes + 1, mode = i / nodes + 1;
        if (headings && node == 1)
            file.write(QByteArray("  Mode ") + QByteArray::number(mode) + "\n");
        const double v = double((node * 7919 + mode * 104729) % 9973) / 7.0 - 600.0;
        std::snprintf(line, sizeof line, "%5lld%18.6E%18.6E%18.6E%18.6E%18.6E%18.6E\n",
                      static_cast<long long>(node), v, -v / 3, v * 1e-3, v / 11, -v * 7, v / 5);
        file.write(line);
    }
}

// Line i of a Mode Shapes report: a node number and six components, 110
// characters; returns its length.
inline int modeShapesLine(char* line, size_t size, qint64 i)
{
    const double v = double(i % 9973) / 7.0 - 600.0;
    return std::snprintf(line, size, "%10lld %16.8E %16.8E %16.8E %16.8E %16.8E %16.8E",
                         static_cast<long long>(i + 1), v, -v / 3, v * 1e-3, v / 11, -v * 7, v / 5);
}

inline void row(const char* what, double value, const char* unit, const char* goal, bool met)
{
    std::printf("%-40s %10.2f %-3s %-20s %s\n", what, value, unit, goal, met ? "met" : "MISSED");
}

// The numbers a child printed on its last line.
inline QList<double> runChild(const QStringList& arguments)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), arguments);
    child.waitForFinished(-1);
    const QList<QByteArray> lines = child.readAllStandardOutput().trimmed().split('\n');
    QList<double> numbers;
    for (const QByteArray& word : lines.last().simplified().split(' '))
        numbers << (word == "yes" ? 1 : word == "NO" ? 0 : word.toDouble());
    return numbers;
}

struct Figure {
    QList<double> values;
    double median() const
    {
        QList<double> sorted = values;
        std::sort(sorted.begin(), sorted.end());
        const qsizetype n = sorted.size();
        return n == 0 ? 0 : n % 2 ? sorted[n / 2] : (sorted[n / 2 - 1] + sorted[n / 2]) / 2;
    }
    double least() const { return *std::min_element(values.begin(), values.end()); }
    double most() const { return *std::max_element(values.begin(), values.end()); }
    QByteArray text(const char* format = "%.1f") const
    {
        const auto number = [format](double v) {
            char digits[32];
            std::snprintf(digits, sizeof digits, format, v);
            return QByteArray(digits);
        };
        return number(median()) + " (" + number(least()) + "-" + number(most()) + ")";
    }
};

// The longest the event loop went without turning, while a step ran.
struct Watch : QObject {
    QElapsedTimer sinceTick;
    double longest = 0;
    Watch()
    {
        auto* timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, [this] {
            longest = std::max(longest, double(sinceTick.nsecsElapsed()) / 1e6);
            sinceTick.restart();
        });
        timer->start(5);
        sinceTick.start();
    }
};

// The figures of so many runs of this program with the arguments, each a
// fresh process, so that its memory is fresh and its peak its own.
template <size_t N> std::array<Figure, N> runFigures(const QStringList& arguments, int runs)
{
    std::array<Figure, N> figures;
    for (int run = 0; run < runs; ++run) {
        const QList<double> numbers = runChild(arguments);
        for (size_t i = 0; i < N; ++i)
            figures[i].values << numbers.value(qsizetype(i));
    }
    return figures;
}

// A benchmark's application, offscreen unless told otherwise, and its
// arguments: a number at a place, at least 1, or the default.
struct Bench {
    Bench(int& argc, char** argv) : app((offscreen(), argc), argv), args(app.arguments().mid(1)) {}
    static void offscreen()
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    qint64 number(int at, qint64 fallback) const
    {
        return std::max<qint64>(1, args.value(at, QString::number(fallback)).toLongLong());
    }
    QApplication app;
    const QStringList args;
};
