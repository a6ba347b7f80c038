#include "zebreport.h"

#include "blocklayouts.h"
#include "blockpage.h"
#include "blockreader.h"
#include "blockview.h"
#include "platform/commandline.h"
#include "platform/files.h"
#include "platform/wait.h"
#include "queuedinputdropper.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QProgressDialog>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <future>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

std::function<QDateTime()> ZEBReport::clock = [] { return QDateTime::currentDateTime(); };
std::function<int(const std::string&)> ZEBReport::runTool = platform::runCommandLine;
std::function<void(QProgressDialog&)> ZEBReport::progressDialogMade;
qint64 ZEBReport::pageMemoryLimit = 0;

namespace
{

constexpr unsigned int lastBlock = 29;

// Diagnostic lines go to standard output, each flushed with its line end.
void say(const QByteArray& text)
{
    std::fputs(text.constData(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

QString stamp(const QDateTime& time)
{
    return QString::asprintf("%02d%02d%02d%02d", time.date().month(), time.date().day(),
                             time.time().hour(), time.time().minute());
}

QFont viewFont()
{
    QFont font("Courier", 10, -1, false);
    font.setFixedPitch(true);
    font.setStyleHint(QFont::TypeWriter, QFont::PreferDefault);
    return font;
}

// How each block with columns is best plotted; the rest plot their first
// varying column over their first.
BlockPlot::Setup plotSetupOf(int block)
{
    BlockPlot::Setup setup;
    switch (block) {
    case 3: // rows of unrelated quantities: a table, no plot
    case 6:
    case 14:
    case 16:
    case 17:
        setup.kind = BlockPlot::Setup::None;
        break;
    case 4: // Nodal Coordinates: x, y, z behind the ID
        setup.kind = BlockPlot::Setup::Projection;
        setup.xColumn = 1;
        break;
    case 7: // Eigenvalues: Hertz over the mode, rigid-body modes near 0 on a log axis
        setup.kind = BlockPlot::Setup::Points;
        setup.yColumn = 2;
        setup.logY = true;
        break;
    case 12: // Generalized Stiffness and Mass: the value over the mode
    case 13:
        setup.kind = BlockPlot::Setup::Points;
        setup.yColumn = 2;
        break;
    case 8: // Mode Shapes, Stress and Strain Modes: one series a mode
    case 18:
    case 29:
        setup.yColumn = -1;
        setup.splitRuns = true;
        break;
    }
    return setup;
}

// block: 0 for a page that is text only (an error or an empty block).
void putView(QWidget* page, const char* name, BlockText text, int block = 0)
{
    auto* view = new BlockView(page);
    view->setObjectName(name);
    view->setFont(viewFont());
    view->setBlockText(std::move(text));
    auto* grid = new QGridLayout(page);
    const BlockLayout* layout =
        block >= 1 && block <= blockLayoutCount ? &blockLayouts[block - 1] : nullptr;
    if (BlockPage::offersViews(layout))
        grid->addWidget(new BlockPage(view, *layout, plotSetupOf(block), page), 0, 0);
    else
        grid->addWidget(view, 0, 0);
    page->adjustSize();
}

// The first line of a page that holds only the start of its report.
QByteArray tooLargeNote(qint64 limit)
{
    const QByteArray note = QString("[Only the start of this report is shown: the whole would take "
                                    "more than the %1 MiB one page may hold here.]")
                                .arg(limit >> 20)
                                .toUtf8();
    say(note);
    return note;
}

// An old report at the name goes aside for the run, so that whatever is
// there afterwards is this run's: where times count whole seconds, a report
// rewritten in place keeps its device, inode and time. A link of the
// user's stays, for the tool to write through; its stamp tells. Returns the
// name it went to, empty when it stayed.
QByteArray moveAside(const QString& report)
{
    const QByteArray name = QFile::encodeName(report);
    struct stat st {
    };
    if (::lstat(name.constData(), &st) != 0 || !S_ISREG(st.st_mode))
        return {};
    QByteArray aside = QFile::encodeName(QFileInfo(report).absolutePath()) + "/.tamsel-XXXXXX";
    const int fd = ::mkstemp(aside.data());
    if (fd < 0)
        return {};
    ::close(fd);
    if (::rename(name.constData(), aside.constData()) == 0)
        return aside;
    ::unlink(aside.constData());
    return {};
}

// The file system can keep a call waiting: a rename while it writes out a
// report written just before (0.2 s for 500 MB), an unlink while it frees a
// big one. Such a call runs aside while the windows are served.
template <typename Call> auto served(Call call)
{
    auto done = std::async(std::launch::async, std::move(call));
    while (done.wait_for(std::chrono::milliseconds(5)) != std::future_status::ready)
        platform::waitStep();
    return done.get();
}

// A run that left nothing at the name gets the old report back, never over
// what the run left; otherwise it goes. Where the file system knows neither
// a rename that refuses to replace nor hard links (FAT), the old report
// stays aside rather than being lost.
void putBack(const QByteArray& aside, const QString& report)
{
    if (aside.isEmpty())
        return;
    const QByteArray name = QFile::encodeName(report);
    if (::renameat2(AT_FDCWD, aside.constData(), AT_FDCWD, name.constData(), RENAME_NOREPLACE) == 0)
        return;
    if (errno != EEXIST && ::link(aside.constData(), name.constData()) != 0 && errno != EEXIST)
        return;
    ::unlink(aside.constData());
}

int headerLinesOf(int block)
{
    return block >= 1 && block <= blockLayoutCount ? blockLayouts[block - 1].headerLines : 0;
}

} // namespace

ZEBReport::ZEBReport(const QString& input, const QString& index)
    : inputFile(input.trimmed()), indexText(index.trimmed())
{
    // The readable test takes the name as given, blanks and all.
    if (!input.isEmpty())
        valid = QFileInfo(input).isReadable();
}

QString ZEBReport::base() const
{
    return QDir::currentPath() + "/" + QFileInfo(inputFile).baseName();
}

TranslatorCommand ZEBReport::command(unsigned int block, const QString& report) const
{
    TranslatorCommand command("OKT_ZEB2MTX");
    command.file(inputFile + "::" + indexText).text(" -d").file(report);
    if (block != 0)
        command.text(QString(" -b %1 ").arg(block));
    return command;
}

bool ZEBReport::commandRefused() const
{
    // Every report name of the job starts with this one's stem.
    return command(0, base() + ".rpt").refused();
}

bool ZEBReport::run(unsigned int block)
{
    notWritten = "not run";
    if (block > lastBlock)
        return false;
    const TranslatorCommand line = command(block, reportFile);
    if (!line.problem().isEmpty())
        return false;
    say("runStr " + line.line().toLocal8Bit());
    // Clicks given meanwhile are dropped.
    std::optional<QueuedInputDropper::DuringRun> windowsServed(std::in_place);
    const QByteArray aside = served([report = reportFile] { return moveAside(report); });
    const FileStamp before(reportFile);
    int status = runTool(line.line().toLocal8Bit().toStdString());
    const QFileInfo info(reportFile);
    // A report from before is no report of this run, and a tool killed by
    // a signal may have left half of one.
    notWritten = reasonNotWritten(before, status);
    served([aside, report = reportFile] { putBack(aside, report); });
    windowsServed.reset();
    failed =
        notWritten.isEmpty() && (status & 0xffff) == 0
            ? QString("the translator's exit code was %1").arg(platform::statusExitCode(status))
            : QString();
    if (!notWritten.isEmpty())
        status = 0;
    say("info.fileName() = " + info.fileName().toLocal8Bit());
    say("return from run() : " + QByteArray::number(status));
    return (status & 0xffff) != 0;
}

QString ZEBReport::reasonNotWritten(const FileStamp& before, int status) const
{
    const int signal = platform::statusSignal(status);
    if (signal != 0)
        return QString("ended by signal %1, %2").arg(signal).arg(::strsignal(signal));
    const FileStamp after(reportFile);
    if (after.exists && !(after == before))
        return QString();
    const QByteArray name = reportFile.toLocal8Bit();
    const QByteArray dir = QFileInfo(reportFile).absolutePath().toLocal8Bit();
    // What kept the tool from writing is most likely what keeps us from it.
    if (::faccessat(AT_FDCWD, dir.constData(), W_OK | X_OK, AT_EACCESS) != 0)
        return QString::fromLocal8Bit(std::strerror(errno));
    if (after.isDirectory)
        return QString::fromLocal8Bit(std::strerror(EISDIR));
    if (after.exists && ::faccessat(AT_FDCWD, name.constData(), W_OK, AT_EACCESS) != 0)
        return QString::fromLocal8Bit(std::strerror(errno));
    return QString("the translator wrote nothing (exit code %1)")
        .arg(platform::statusExitCode(status));
}

QString ZEBReport::generateReports(const char* blockSelection)
{
    const QString when = stamp(clock());
    const QString wholeFile = QString("%1_%2.rpt").arg(base(), when);
    say(wholeFile.toLocal8Bit());
    if (blockSelection[0]) {
        reportFile = wholeFile;
        if (starting)
            starting(0, 0, 1);
        run(0);
        return listed();
    }
    const int total = int(std::count(blockSelection + 1, blockSelection + lastBlock + 1, 1));
    QString result = "";
    int done = 0;
    for (unsigned int block = 1; block <= lastBlock; ++block) {
        if (!blockSelection[block])
            continue;
        reportFile = base() + QString("_%1_block%2.rpt").arg(when).arg(block);
        if (starting)
            starting(block, done++, total);
        run(block);
        result += "\n" + listed();
    }
    return result;
}

QString ZEBReport::listed() const
{
    if (!notWritten.isEmpty())
        return QString("%1 (not written: %2)").arg(reportFile, notWritten);
    if (!failed.isEmpty())
        return QString("%1 (failed: %2)").arg(reportFile, failed);
    return reportFile;
}

bool ZEBReport::showBlock(QWidget* page, int block)
{
    if (!valid)
        return false;
    reportFile = base() + ".rpt";
    if (!run(block)) {
        putView(page, "error parsing block message",
                BlockText::fromString("This Block could not be parsed or is empty."));
        return true;
    }
    // Only an ordinary file: a FIFO would hang the read, a device or a link
    // to one would never end.
    std::string reason;
    const int fd = platform::openRegularFile(QFile::encodeName(reportFile).toStdString(), reason);
    if (fd < 0)
        std::fprintf(stderr, "%s: %s\n", qPrintable(reportFile), reason.c_str());
    if (fd == -2) {
        putView(page, "error parsing block message",
                BlockText::fromString("This Block could not be parsed or is empty."));
        return true;
    }
    QFile file;
    if (fd < 0 || !file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return false;
    const qint64 size = file.size();
    const int total = int(qMin<qint64>(size, INT_MAX));

    QProgressDialog progress(QString::asprintf("Parsing Block %d", block), "Cancel", 0, total);
    progress.setObjectName("progress");
    progress.setWindowModality(Qt::ApplicationModal);
    progress.setValue(0); // starts the clock of the minimum duration
    if (progressDialogMade)
        progressDialogMade(progress);
    QElapsedTimer served;
    served.start();
    BlockReader reader(
        headerLinesOf(block),
        [&progress, &served](qint64 estimate) {
            progress.setValue(int(qMin<qint64>(estimate, INT_MAX)));
            // Until the dialog shows, its value alone does not keep the
            // window painted; input waits for the page.
            if (!progress.isVisible() && served.elapsed() >= 50) {
                QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
                served.restart();
            }
            return !progress.wasCanceled();
        },
        [](const QByteArray& line) { say("skipping: " + line); });
    const qint64 limit = pageMemoryLimit > 0 ? pageMemoryLimit : BlockReader::pageMemoryLimit();
    reader.setMemoryLimit(limit);
    BlockText text = reader.read(file, size);
    if (reader.truncated())
        text.prependLine(tooLargeNote(limit));
    const bool empty = text.lineCount() == 0;
    if (empty)
        text = BlockText::fromString("This block is empty.");
    putView(page, "text viewer", std::move(text), empty ? 0 : block);
    progress.setValue(total);
    return true;
}
