#include "blockfilewriter.h"

#include "platform/files.h"

#include <QFile>
#include <QMessageBox>

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
    QMessageBox::warning(parent, "Save Failed",
                         QString("%1 could not be written: %2").arg(path, error));
    return false;
}
