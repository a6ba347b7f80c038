// Reports that are not ordinary small files: what the browser's page shows
// for a link to a device, a FIFO, a sparse giant, a report larger than a
// page may hold, and a line without end while the user cancels.
#include "blockview.h"
#include "scratchdir.h"
#include "standins.h"
#include "zebreport.h"

#include "platform/commandline.h"

#include <QProgressDialog>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

class TestOddReports : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        ZEBReport::runTool = platform::runCommandLine;
        ZEBReport::progressDialogMade = nullptr;
        ZEBReport::pageMemoryLimit = 0;
    }

    void page_data()
    {
        QTest::addColumn<QString>("report"); // what the tool leaves as base.rpt
        QTest::addColumn<qint64>("limit");   // a page's memory, 0: the system's
        QTest::addColumn<bool>("cancel");    // the user cancels at once
        QTest::addColumn<QString>("first");  // the page's first line
        QTest::addColumn<qint64>("most");    // at most so many bytes on the page
        const QString error = "This Block could not be parsed or is empty.";
        const QString note = "[Only the start of this report is shown";
        const qint64 mib = 1 << 20;
        // clang-format off
        QTest::newRow("link to /dev/zero")   << "zero"       << qint64(0) << false << error << mib;
        QTest::newRow("FIFO")                << "fifo"       << qint64(0) << false << error << mib;
        QTest::newRow("directory")           << "dir"        << qint64(0) << false << error << mib;
        // Only its name counts: a file written through a link is no report of this run.
        QTest::newRow("link's file written") << "link"       << qint64(0) << false << error << mib;
        QTest::newRow("64 GiB sparse")       << "sparse"     << 4 * mib   << false << note  << 4 * mib;
        QTest::newRow("over the page's memory") << "lines"   << 2 * mib   << false << note  << 2 * mib;
        QTest::newRow("line without end, cancelled") << "endless" << qint64(0) << true << "" << 16 * mib;
        // clang-format on
    }

    void page()
    {
        QFETCH(QString, report);
        QFETCH(qint64, limit);
        QFETCH(bool, cancel);
        QFETCH(QString, first);
        QFETCH(qint64, most);
        ScratchDir dir;
        Standins standins(dir.path()); // the translator the command names
        QVERIFY(dir.write("in.zeb", "zeb\n"));
        const QByteArray path = QFile::encodeName(dir.filePath("in.rpt"));
        QVERIFY(report != "link" || (dir.write("elsewhere", "") && QFile::link("elsewhere", path)));
        bool ran = false;
        ZEBReport::runTool = [&](const std::string&) {
            ran = true;
            bool made = true;
            if (report == "zero")
                made = ::symlink("/dev/zero", path) == 0;
            else if (report == "fifo")
                made = ::mkfifo(path, 0600) == 0;
            else if (report == "dir")
                made = ::mkdir(path, 0700) == 0;
            else if (report == "link")
                made = dir.write("elsewhere", QByteArray("not a report\n").repeated(20));
            else if (report == "sparse")
                made = dir.write("in.rpt", "") && QFile::resize(path, qint64(64) << 30);
            else if (report == "lines")
                made = dir.write("in.rpt", QByteArray("header\n").repeated(9) +
                                               QByteArray("0123456789\n").repeated(1 << 20));
            else
                made = dir.write("in.rpt", QByteArray(64 << 20, 'x'));
            return made ? 0x100 : 0; // exit code 1: a report was written
        };
        ZEBReport::pageMemoryLimit = limit;
        ZEBReport::progressDialogMade = [cancel](QProgressDialog& progress) {
            if (cancel)
                progress.cancel();
        };
        ZEBReport job(dir.filePath("in.zeb"), "1");
        QWidget page;
        QVERIFY(job.showBlock(&page, 8));
        QVERIFY(ran);
        auto* view = page.findChild<BlockView*>();
        QVERIFY(view);
        const BlockText& text = view->blockText();
        QVERIFY(text.lineCount() > 0 || first.isEmpty());
        if (!first.isEmpty())
            QVERIFY2(text.line(0).startsWith(first), qPrintable(text.line(0).left(80)));
        QVERIFY2(text.memoryUse() <= most + 4096, qPrintable(QString::number(text.memoryUse())));
    }
};

QTEST_MAIN(TestOddReports)
#include "test_oddreports.moc"
