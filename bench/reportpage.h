#pragma once

#include "zebreport.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QWidget>

// The browser's own road from the tool's end: the report at path, written
// for block 8 (nine leading lines), read back onto a page shown at size,
// progress dialog and all. The run only marks the report as its own.
inline QWidget* openReportPage(const QString& path, QSize size)
{
    if (qEnvironmentVariableIsEmpty("OKT_ZEB2MTX")) // found, never run
        qputenv("OKT_ZEB2MTX", "/bin/true");
    const QFileInfo report(path);
    QDir::setCurrent(report.path());
    QFile(report.completeBaseName() + ".zeb").open(QIODevice::WriteOnly);
    ZEBReport::runTool = [name = report.fileName()](const std::string&) {
        QFile file(name);
        file.open(QIODevice::ReadWrite);
        file.setFileTime(QDateTime::currentDateTime(), QFileDevice::FileModificationTime);
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
