#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

// Runs a test in a fresh temporary working directory and goes back to the
// old one afterwards: the program writes its batch and script files into
// whatever directory it runs in.
class ScratchDir
{
public:
    ScratchDir() { QDir::setCurrent(dir.path()); }
    ~ScratchDir() { QDir::setCurrent(previous); }

    QString path() const { return dir.path(); }
    QString filePath(const QString& name) const { return dir.filePath(name); }
    QByteArray read(const QString& name) const
    {
        QFile f(filePath(name));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    bool write(const QString& name, const QByteArray& bytes, bool executable = false) const
    {
        QFile f(filePath(name));
        return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size() &&
               (!executable || f.setPermissions(f.permissions() | QFile::ExeOwner));
    }

private:
    QString previous = QDir::currentPath();
    QTemporaryDir dir;
};
