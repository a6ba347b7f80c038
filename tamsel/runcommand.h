#pragma once

#include <QString>

// What became of one console run.
class RunResult
{
public:
    enum Outcome {
        Succeeded, // the command ran and the interpreter reported 0
        Failed,    // the command ran and the interpreter reported a problem
        NotRun     // the batch file could not be written; the user was told
    };

    RunResult(Outcome outcome, int status, const QString& problem = QString())
        : outcome_(outcome), status_(status), problem_(problem)
    {
    }

    // True when the caller is to show its own warning about the run.
    explicit operator bool() const { return outcome_ == Failed; }

    Outcome outcome() const { return outcome_; }
    bool wasRun() const { return outcome_ != NotRun; }
    int status() const { return status_; }
    QString problem() const { return problem_; }

private:
    Outcome outcome_;
    int status_;
    QString problem_;
};

// Writes the command into runtamsel.bat in the current directory and runs it
// in a console that shows a Begin banner, the command, its output, an End
// banner, and waits for a key. Blocks until the console is done. When the
// batch file cannot be written nothing runs, the user gets a warning naming
// the place and the reason, and the result says NotRun.
RunResult runCommand(const QString& command, const QString& title);

// Why nothing can be written into the current directory (it was deleted, or
// is not writable), or empty when it can.
QString workingDirectoryProblem();
