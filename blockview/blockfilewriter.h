#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

class QProgressDialog;
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

    // Appends the next piece of a file to piece and sets how much of the
    // whole is then done, 0 to 1; false once nothing is left.
    using NextPiece = std::function<bool(QByteArray& piece, double& done)>;
    // A file too large to hold whole, written a piece at a time; with a
    // parent, under a progress dialog whose Cancel leaves no new file
    // (false, error empty).
    static bool write(QWidget* parent, const QString& label, const QString& path,
                      const NextPiece& next, QString& error);
    // The same, with a warning on parent when it fails.
    static bool writeOrWarn(QWidget* parent, const QString& label, const QString& path,
                            const NextPiece& next);
    // Asks on parent whether a selection of so many bytes, too big for the
    // clipboard, goes to a file instead, and which; empty: it does not.
    static QString askSaveInstead(QWidget* parent, qint64 bytes);
    // Told of each progress dialog when it is made (tests cancel it).
    static std::function<void(QProgressDialog&)> progressDialogMade;
};
