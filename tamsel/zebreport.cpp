#include "zebreport.h"

#include "blocklayouts.h"
#include "blockpage.h"
#include "blockreader.h"
#include "blockview.h"
#include "platform/commandline.h"
#include "queuedinputdropper.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QProgressDialog>

#include <climits>
#include <cstdio>
#include <cstdlib>

std::function<QDateTime()> ZEBReport::clock = [] { return QDateTime::currentDateTime(); };
std::function<int(const std::string&)> ZEBReport::runTool = platform::runCommandLine;
std::function<void(QProgressDialog&)> ZEBReport::progressDialogMade;

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

// How each block with columns is best plotted; the rest plot their second
// column over their first.
BlockPlot::Setup plotSetupOf(int block)
{
    BlockPlot::Setup setup;
    switch (block) {
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
        setup.runName = "Mode %1";
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
    if (block > lastBlock)
        return false;
    const TranslatorCommand line = command(block, reportFile);
    if (!line.problem().isEmpty())
        return false;
    say("runStr " + line.line().toLocal8Bit());
    int status = runTool(line.line().toLocal8Bit().toStdString());
    QueuedInputDropper::dropPending(); // clicks given while the tool ran
    const QFileInfo info(reportFile);
    if (!info.exists())
        status = 0;
    say("info.fileName() = " + info.fileName().toLocal8Bit());
    say("return from run() : " + QByteArray::number(status));
    return (status & 0xffff) != 0;
}

QString ZEBReport::generateReports(const char* blockSelection)
{
    const QString when = stamp(clock());
    const QString wholeFile = QString("%1_%2.rpt").arg(base(), when);
    say(wholeFile.toLocal8Bit());
    if (blockSelection[0]) {
        reportFile = wholeFile;
        run(0);
        return wholeFile;
    }
    QString result = "";
    for (unsigned int block = 1; block <= lastBlock; ++block) {
        if (!blockSelection[block])
            continue;
        reportFile = base() + QString("_%1_block%2.rpt").arg(when).arg(block);
        result += "\n" + reportFile;
        run(block);
    }
    return result;
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
    QFile file(reportFile);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const qint64 size = file.size();
    const int total = int(qMin<qint64>(size, INT_MAX));

    QProgressDialog progress(QString::asprintf("Parsing Block %d", block), "Cancel", 0, total);
    progress.setObjectName("progress");
    progress.setWindowModality(Qt::ApplicationModal);
    progress.setValue(0); // starts the clock of the minimum duration
    if (progressDialogMade)
        progressDialogMade(progress);
    BlockReader reader(
        headerLinesOf(block),
        [&progress](qint64 estimate) {
            progress.setValue(int(qMin<qint64>(estimate, INT_MAX)));
            return !progress.wasCanceled();
        },
        [](const QByteArray& line) { say("skipping: " + line); });
    BlockText text = reader.read(file, size);
    const bool empty = text.lineCount() == 0;
    if (empty)
        text = BlockText::fromString("This block is empty.");
    putView(page, "text viewer", std::move(text), empty ? 0 : block);
    progress.setValue(total);
    return true;
}
