#pragma once

#include <QString>
#include <QTemporaryDir>

// A directory that nobody can write into, root included: tests run as root,
// for whom permission bits mean nothing. It is made immutable, or else a
// read-only file system is mounted on it; isValid() tells whether either
// worked. Files given to the constructor are put in before it is locked.
class ReadOnlyDir
{
public:
    explicit ReadOnlyDir(const QStringList& files = {});
    ~ReadOnlyDir();

    bool isValid() const { return locked; }
    QString path() const { return dir.path(); }

private:
    bool run(const QString& program, const QStringList& args) const;

    QTemporaryDir dir;
    bool locked = false;
    QString method;
};
