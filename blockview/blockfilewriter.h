#pragma once

#include <QByteArray>
#include <QString>

class QWidget;

// Writes what the block page saves (a table as CSV, a plot as a picture)
// the way Tamsel writes all its files: a new file beside the target that
// takes its name when complete, never through a link.
class BlockFileWriter
{
public:
    // False, with the system's reason in error, when the file cannot be
    // written; an older file of that name stays as it was.
    static bool write(const QString& path, const QByteArray& bytes, QString& error);
    // The same, with a warning on parent when it fails.
    static bool writeOrWarn(QWidget* parent, const QString& path, const QByteArray& bytes);
};
