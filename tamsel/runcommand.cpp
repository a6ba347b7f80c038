#include "runcommand.h"

#include "messagebox.h"
#include "platform/console.h"
#include "platform/files.h"
#include "queuedinputdropper.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <cstdio>

#ifndef TAMSEL_CONSOLE_RELATIVE
#define TAMSEL_CONSOLE_RELATIVE "../libexec/tamsel/tamsel-cmd"
#endif

namespace
{

const char* const batchFileName = "runtamsel.bat";

// Beside the program in a build tree, in libexec once installed.
QString consoleProgram()
{
    const QString dir = QCoreApplication::applicationDirPath();
    const QString beside = dir + "/tamsel-cmd";
    if (QFileInfo(beside).isExecutable())
        return beside;
    return QDir::cleanPath(dir + "/" + TAMSEL_CONSOLE_RELATIVE);
}

QByteArray batchText(const QString& command, const QString& title)
{
    const QStringList lines = {"@echo off", "echo Begin " + title,
                               "echo.",     "echo command : " + command,
                               "echo.",     command,
                               "echo.",     "echo End " + title,
                               "echo.",     "pause"};
    QByteArray text;
    for (const QString& line : lines)
        text += line.toLocal8Bit() + '\n';
    return text;
}

// A line break would split the command into two batch lines, the second of
// which would run as a command of its own.
bool fitsOnOneLine(const QString& text)
{
    return !text.contains('\n') && !text.contains('\r') && !text.contains(QChar(0));
}

// Writes the batch file the user sees; on failure returns the reason.
QString writeBatchFile(const QByteArray& text)
{
    const QString problem = workingDirectoryProblem();
    if (!problem.isEmpty())
        return problem;
    std::string error;
    if (platform::replaceFile(batchFileName, text.toStdString(), error))
        return QString();
    const QString where = QDir::toNativeSeparators(QDir::current().absoluteFilePath(batchFileName));
    return QString("The file %1 cannot be written:\n%2")
        .arg(where, QString::fromLocal8Bit(error.c_str()));
}

} // namespace

QString workingDirectoryProblem()
{
    bool deleted = false;
    const QString dir = QString::fromLocal8Bit(platform::workingDirectory(&deleted).c_str());
    if (deleted)
        return QString("The working directory %1 no longer exists.")
            .arg(QDir::toNativeSeparators(dir));
    if (!QFileInfo(dir).isWritable())
        return QString("The working directory %1 is not writable.")
            .arg(QDir::toNativeSeparators(dir));
    return QString();
}

RunResult runCommand(const QString& command, const QString& title)
{
    // Only reached by a caller that did not look: every window is closed
    // to input and to assistive tools while a run waits.
    if (QueuedInputDropper::DuringRun::active()) {
        std::fprintf(stderr, "another run is in progress: %s not run\n", qPrintable(title));
        return RunResult(RunResult::NotRun, 0, "another run is in progress");
    }
    QString problem;
    if (!fitsOnOneLine(command) || !fitsOnOneLine(title))
        problem = QString("The command contains a line break, which a batch file cannot hold:\n%1")
                      .arg(command);
    const QByteArray text = batchText(command, title);
    if (problem.isEmpty())
        problem = writeBatchFile(text);
    if (!problem.isEmpty()) {
        MessageBox::warn("Unable To Run", problem + "\nNothing was run.");
        return RunResult(RunResult::NotRun, 0, problem);
    }
    // The console runs its own copy: the file above is for the user to see.
    int status = 0;
    {
        const QueuedInputDropper::DuringRun windowsServed;
        // The console window says what runs: "Tamsel: Translating QRT to ZEB".
        const QString windowTitle = "Tamsel: " + title.section(" ...", 0, 0);
        status =
            platform::runInConsole(text.toStdString(), consoleProgram().toLocal8Bit().toStdString(),
                                   windowTitle.toLocal8Bit().toStdString());
    }
    // Only the low 16 bits count, as with the command interpreter's status.
    const bool failed = (status & 0xffff) != 0;
    return RunResult(failed ? RunResult::Failed : RunResult::Succeeded, status);
}
