#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

// A directory that nobody can write into, root included: tests run as root,
// for whom permission bits mean nothing. It is made immutable, or else a
// read-only file system is mounted on it, or (for anyone else) its write
// permission is taken away; isValid() tells whether one of these worked.
class ReadOnlyDir
{
public:
    ReadOnlyDir()
    {
        if (run({"chattr", "+i"}))
            undo = {"chattr", "-i"};
        else if (run({"mount", "-t", "tmpfs", "-o", "ro,size=64k", "tamsel-ro"}))
            undo = {"umount"};
        else if (run({"chmod", "500"}))
            undo = {"chmod", "700"};
        // Prove it: a directory that still takes a file is no test at all.
        QFile probe(dir.filePath("probe"));
        locked = !undo.isEmpty() && !probe.open(QIODevice::WriteOnly);
        probe.remove();
    }
    ~ReadOnlyDir()
    {
        if (!undo.isEmpty())
            run(undo);
    }

    bool isValid() const { return locked; }
    QString path() const { return dir.path(); }

private:
    // Runs the command on the directory.
    bool run(const QStringList& command) const
    {
        QProcess p;
        p.start(command[0], command.mid(1) << path());
        return p.waitForFinished(10000) && p.exitStatus() == QProcess::NormalExit &&
               p.exitCode() == 0;
    }

    QTemporaryDir dir;
    QStringList undo;
    bool locked = false;
};
