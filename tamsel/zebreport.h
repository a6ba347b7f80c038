#pragma once

#include "filestamp.h"
#include "translatorcommand.h"

#include <QDateTime>
#include <QString>

#include <functional>
#include <string>

class QProgressDialog;
class QWidget;

// One extraction job of the browser: has ZEB2MTX write block reports of an
// input file (or a body of a database) into the current directory, and
// either shows a report on a page or lists the time-stamped files written.
class ZEBReport
{
public:
    // Flags by block number, 1 to 29; element 0 asks for the whole file.
    static constexpr int selectionSize = 30;

    ZEBReport(const QString& inputFile, const QString& indexText);

    // Runs the tool for one block (0: the whole file) into reportFile. True
    // when the report counts as written: a report there before is moved
    // aside for the run (a link of the user's stays, and what it leads to
    // must change), the tool was not ended by a signal, and its status is
    // non-zero in its low 16 bits (the tool's own convention).
    bool run(unsigned int block);

    // Warns and answers true when the command lines of this job cannot
    // carry the input and the report names whole.
    bool commandRefused() const;

    // Writes the reports of the selection and returns the names asked
    // for, each behind a line feed.
    QString generateReports(const char* blockSelection);

    // Runs the tool for the block and shows the report on the page. False
    // only when this object is not valid or the report cannot be opened.
    bool showBlock(QWidget* page, int block);

    QString reportFile;
    // Why the last run left no report of its own, empty when it wrote one.
    QString notWritten;
    // Why a report the last run wrote does not count, empty when it does.
    QString failed;
    // Told before each run of generateReports: the block (0: the whole
    // file), how many came before it and how many there are.
    std::function<void(unsigned int block, int done, int total)> starting;
    QString inputFile;
    QString indexText;
    bool valid = false;

    // Where the time comes from, and how a command line runs; tests put
    // their own here.
    static std::function<QDateTime()> clock;
    static std::function<int(const std::string&)> runTool;
    // Called with each progress dialog before the reading starts.
    static std::function<void(QProgressDialog&)> progressDialogMade;
    // The most memory one page may take; 0: as much as the system can spare.
    static qint64 pageMemoryLimit;

private:
    QString base() const;
    // Why this run left no report of its own; empty when it wrote one.
    QString reasonNotWritten(const FileStamp& before, int status) const;
    // The report's name for the list, with the reason when it was not written.
    QString listed() const;
    TranslatorCommand command(unsigned int block, const QString& report) const;
};
