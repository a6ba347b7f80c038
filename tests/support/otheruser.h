#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <unistd.h>

// Runs one test function of this program again as the unprivileged user
// nobody. The program and the build tree's libraries are copied first into
// a folder everyone may enter: the tree itself may lie below a folder only
// its owner can enter (root's home, mktemp -d), where nobody could load them.
class OtherUser
{
public:
    static constexpr uid_t uid = 65534;

    // Exit status of the run (0: the function passed), its output beside.
    static int run(const QString& function, const QProcessEnvironment& extra, QByteArray& output)
    {
        QTemporaryDir copy;
        const QString program =
            copy.filePath(QFileInfo(QCoreApplication::applicationFilePath()).fileName());
        if (!copyReadable(QCoreApplication::applicationFilePath(), program) ||
            !copyLibraries(copy.path()) ||
            !QFile::setPermissions(copy.path(), QFile::ReadOwner | QFile::WriteOwner |
                                                    QFile::ExeOwner | QFile::ReadOther |
                                                    QFile::ExeOther)) {
            output = "cannot copy the test program for another user";
            return -1;
        }
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const QString& key : extra.keys())
            env.insert(key, extra.value(key));
        env.insert("LD_LIBRARY_PATH", copy.path());
        QProcess user;
        user.setProcessEnvironment(env);
        user.setProcessChannelMode(QProcess::MergedChannels);
        user.start("setpriv", {"--reuid=" + QString::number(uid), "--regid=" + QString::number(uid),
                               "--clear-groups", program, function});
        if (!user.waitForFinished(60000)) {
            user.kill();
            user.waitForFinished();
        }
        output = user.readAll();
        return user.exitStatus() == QProcess::NormalExit ? user.exitCode() : -1;
    }

private:
    static bool copyReadable(const QString& from, const QString& to)
    {
        return QFile::copy(from, to) &&
               QFile::setPermissions(to, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                             QFile::ReadOther | QFile::ExeOther);
    }

    // Every library the build made, under each of its names (the loader asks
    // for the SONAME, a link to the versioned file).
    static bool copyLibraries(const QString& dir)
    {
        const QDir lib(QStringLiteral(TAMSEL_BUILD_LIB_DIR));
        for (const QString& name : lib.entryList({"*.so*"}, QDir::Files))
            if (!copyReadable(lib.filePath(name), dir + "/" + name))
                return false;
        return true;
    }
};
