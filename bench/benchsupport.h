#pragma once

#include "zebreport.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QWidget>

#include <cstdio>

#include <unistd.h>

// What the benchmarks share: a way onto the browser's page, a line of a
// report, and a row of results beside its goal.

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
        ::link(QFile::encodeName(made).constData(), QFile::encodeName(name).constData());
        return 1 << 8;
    };
    ZEBReport job(report.completeBaseName() + ".zeb", "1");
    auto* page = new QWidget;
    job.showBlock(page, 8);
    page->resize(size);
    page->show();
    QCoreApplication::processEvents();
    return page;
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
