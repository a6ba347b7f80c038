#include "readonlydir.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <unistd.h>

ReadOnlyDir::ReadOnlyDir(const QStringList& files)
{
    for (const QString& f : files) {
        QFile file(dir.filePath(f));
        if (!file.open(QIODevice::WriteOnly))
            return;
    }
    if (::geteuid() != 0) {
        locked = QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::ExeOwner);
        method = "mode 0500";
    } else if (run("chattr", {"+i", dir.path()})) {
        locked = true;
        method = "chattr";
    } else if (files.isEmpty() &&
               run("mount", {"-t", "tmpfs", "-o", "ro,size=64k", "tamsel-ro", dir.path()})) {
        locked = true;
        method = "mount";
    }
    // Prove it: a directory that still takes a file is no test at all.
    if (locked) {
        QFile probe(dir.filePath("probe"));
        if (probe.open(QIODevice::WriteOnly)) {
            probe.remove();
            locked = false;
        }
    }
}

ReadOnlyDir::~ReadOnlyDir()
{
    if (method == "chattr")
        run("chattr", {"-i", dir.path()});
    else if (method == "mount")
        run("umount", {dir.path()});
    else if (!method.isEmpty())
        QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

bool ReadOnlyDir::run(const QString& program, const QStringList& args) const
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, args);
    return p.waitForFinished(10000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}
