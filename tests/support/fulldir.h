#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

// A directory on a file system with no space left: a small tmpfs mounted on
// it and filled up. It holds the file named, with "old\n" in it, written
// before it was full.
// isValid() tells whether the mount worked (it needs root).
class FullDir
{
public:
    explicit FullDir(const QString& name)
    {
        mounted = run({"mount", "-t", "tmpfs", "-o", "size=64k", "tamsel-full", dir.path()});
        QFile old(dir.filePath(name));
        QFile filler(dir.filePath("filler"));
        full = mounted && old.open(QIODevice::WriteOnly) && old.write("old\n") == 4 &&
               old.flush() && filler.open(QIODevice::WriteOnly);
        while (full && filler.write(QByteArray(4096, 'x')) > 0 && filler.flush()) {
        }
    }
    ~FullDir()
    {
        if (mounted)
            run({"umount", dir.path()});
    }

    bool isValid() const { return full; }
    QString path() const { return dir.path(); }

private:
    static bool run(const QStringList& command)
    {
        QProcess p;
        p.start(command[0], command.mid(1));
        return p.waitForFinished(10000) && p.exitStatus() == QProcess::NormalExit &&
               p.exitCode() == 0;
    }

    QTemporaryDir dir;
    bool mounted = false;
    bool full = false;
};
