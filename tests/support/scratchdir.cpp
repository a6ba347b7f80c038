#include "scratchdir.h"

#include <QDir>
#include <QFile>

ScratchDir::ScratchDir() : previous(QDir::currentPath())
{
    QDir::setCurrent(dir.path());
}

ScratchDir::~ScratchDir()
{
    QDir::setCurrent(previous);
}

QByteArray ScratchDir::read(const QString& name) const
{
    QFile f(filePath(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

bool ScratchDir::write(const QString& name, const QByteArray& bytes) const
{
    QFile f(filePath(name));
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}
