#pragma once

#include <QString>
#include <QTemporaryDir>

// Runs a test in a fresh temporary working directory and goes back to the
// old one afterwards: the program writes its batch and script files into
// whatever directory it runs in.
class ScratchDir
{
public:
    ScratchDir();
    ~ScratchDir();

    QString path() const { return dir.path(); }
    QString filePath(const QString& name) const { return dir.filePath(name); }
    bool isValid() const { return dir.isValid(); }

    QByteArray read(const QString& name) const;
    bool write(const QString& name, const QByteArray& bytes) const;

private:
    QString previous;
    QTemporaryDir dir;
};
