#include "blockfilewriter.h"

#include "platform/filereplacement.h"
#include "platform/files.h"

#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QProgressDialog>

#include <memory>

std::function<void(QProgressDialog&)> BlockFileWriter::progressDialogMade;

namespace
{

void warn(QWidget* parent, const QString& path, const QString& error)
{
    QMessageBox::warning(parent, "Save Failed",
                         QString("%1 could not be written: %2").arg(path, error));
}

} // namespace

bool BlockFileWriter::write(const QString& path, const QByteArray& bytes, QString& error)
{
    std::string reason;
    if (platform::replaceFile(QFile::encodeName(path).toStdString(), bytes.toStdString(), reason))
        return true;
    error = QString::fromLocal8Bit(reason.c_str());
    return false;
}

bool BlockFileWriter::writeOrWarn(QWidget* parent, const QString& path, const QByteArray& bytes)
{
    QString error;
    if (write(path, bytes, error))
        return true;
    warn(parent, path, error);
    return false;
}

bool BlockFileWriter::write(QWidget* parent, const QString& label, const QString& path,
                            const NextPiece& next, QString& error)
{
    std::unique_ptr<QProgressDialog> progress;
    if (parent) {
        progress = std::make_unique<QProgressDialog>(label, "Cancel", 0, 1000, parent);
        progress->setWindowModality(Qt::WindowModal);
        if (progressDialogMade)
            progressDialogMade(*progress);
        progress->setValue(0);
    }
    platform::FileReplacement file(QFile::encodeName(path).toStdString());
    QByteArray piece;
    double done = 0;
    bool more = true, written = true;
    while (more && written) {
        piece.clear();
        more = next(piece, done);
        if (progress) {
            progress->setValue(qBound(0, int(done * 1000), 999));
            if (progress->wasCanceled()) {
                error.clear();
                return false;
            }
        }
        written = file.write(piece.constData(), size_t(piece.size()));
    }
    if (written && file.commit())
        return true;
    error = QString::fromLocal8Bit(file.error().c_str());
    return false;
}

bool BlockFileWriter::writeOrWarn(QWidget* parent, const QString& label, const QString& path,
                                  const NextPiece& next)
{
    QString error;
    if (write(parent, label, path, next, error))
        return true;
    if (!error.isEmpty())
        warn(parent, path, error);
    return false;
}

QString BlockFileWriter::askSaveInstead(QWidget* parent, qint64 bytes)
{
    const QString size = QString::number(double(bytes) / (1 << 20), 'f', 0);
    if (QMessageBox::question(parent, QObject::tr("Copy"),
                              QObject::tr("The selection holds %1 MiB of text, too much for the "
                                          "clipboard.\nSave it to a file instead?")
                                  .arg(size),
                              QMessageBox::Save | QMessageBox::Cancel,
                              QMessageBox::Save) != QMessageBox::Save)
        return {};
    return QFileDialog::getSaveFileName(parent, QObject::tr("Save Selection"));
}
