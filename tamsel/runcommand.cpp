#include "runcommand.h"

#include "messagebox.h"
#include "platform/console.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{

const char* const batchFileName = "runtamsel.bat";

QString consoleProgram()
{
    return QCoreApplication::applicationDirPath() + "/tamsel-cmd";
}

QStringList batchLines(const QString& command, const QString& title)
{
    return {"@echo off", "echo Begin " + title,
            "echo.",     "echo command : " + command,
            "echo.",     command,
            "echo.",     "echo End " + title,
            "echo.",     "pause"};
}

// A line break would split the command into two batch lines, the second of
// which would run as a command of its own.
bool fitsOnOneLine(const QString& text)
{
    return !text.contains('\n') && !text.contains('\r') && !text.contains(QChar(0));
}

// Writes the batch file; on failure returns the reason for the user.
QString writeBatchFile(const QString& command, const QString& title)
{
    if (!fitsOnOneLine(command) || !fitsOnOneLine(title))
        return QString("The command contains a line break, which a batch file cannot hold:\n%1")
            .arg(command);
    const QString dir = QDir::currentPath();
    if (!QFileInfo(dir).isWritable())
        return QString("The working directory %1 is not writable.")
            .arg(QDir::toNativeSeparators(dir));

    QFile file(batchFileName);
    const QString where = QDir::toNativeSeparators(QDir(dir).absoluteFilePath(batchFileName));
    if (!file.open(QIODevice::WriteOnly))
        return QString("The file %1 cannot be written:\n%2").arg(where, file.errorString());
    for (const QString& line : batchLines(command, title)) {
        if (file.write(line.toLocal8Bit() + '\n') < 0 || !file.flush())
            return QString("The file %1 cannot be written:\n%2").arg(where, file.errorString());
    }
    file.close();
    return QString();
}

} // namespace

RunResult runCommand(const QString& command, const QString& title)
{
    const QString problem = writeBatchFile(command, title);
    if (!problem.isEmpty()) {
        MessageBox::warn("Unable To Run", problem + "\nNothing was run.");
        return RunResult(RunResult::NotRun, 0, problem);
    }
    const QString batch = QDir::current().absoluteFilePath(batchFileName);
    const int status = platform::runInConsole(batch.toLocal8Bit().toStdString(),
                                              consoleProgram().toLocal8Bit().toStdString());
    // Only the low 16 bits count, as with the command interpreter's status.
    const bool failed = (status & 0xffff) != 0;
    return RunResult(failed ? RunResult::Failed : RunResult::Succeeded, status);
}
