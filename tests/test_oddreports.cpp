// Reports that are not ordinary small files: what the browser's page shows
// for a link to a device, a FIFO, a sparse giant without a line feed, leading
// lines of megabytes, a report larger than a page may hold, and a line
// without end while the user cancels; Cancel is heard every few megabytes,
// memory stays bounded and the "skipping: " diagnostic short.
#include "blockview.h"
#include "residentmemory.h"
#include "scratchdir.h"
#include "standins.h"
#include "zebreport.h"

#include "platform/commandline.h"

#include <QProgressBar>
#include <QProgressDialog>
#include <QTemporaryFile>
#include <QTest>

#include <cstdio>

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
        QTest::addColumn<QString>("report");  // what the tool leaves as base.rpt
        QTest::addColumn<qint64>("limit");    // a page's memory, 0: the system's
        QTest::addColumn<qint64>("cancelAt"); // the user cancels at so many bytes, -1: never
        QTest::addColumn<QString>("first");   // the page's first line
        QTest::addColumn<qint64>("most");     // at most so many bytes on the page
        const QString error = "This Block could not be parsed or is empty.";
        const QString note = "[Only the start of this report is shown";
        const qint64 mib = 1 << 20;
        const QString empty = "This block is empty.";
        const qint64 never = -1;
        // clang-format off
        QTest::newRow("link to /dev/zero")   << "zero"       << qint64(0) << never << error << mib;
        QTest::newRow("FIFO")                << "fifo"       << qint64(0) << never << error << mib;
        QTest::newRow("directory")           << "dir"        << qint64(0) << never << error << mib;
        QTest::newRow("8 GiB sparse, no line feed") << "sparse" << qint64(0) << 256 * mib << empty << mib;
        QTest::newRow("leading lines of 8 MiB") << "leading" << qint64(0) << never << "data" << mib;
        QTest::newRow("over the page's memory") << "lines"   << 2 * mib   << never << note  << 2 * mib;
        QTest::newRow("line without end, cancelled") << "endless" << qint64(0) << qint64(0) << "" << 16 * mib;
        // clang-format on
    }

    void page()
    {
        QFETCH(QString, report);
        QFETCH(qint64, limit);
        QFETCH(qint64, cancelAt);
        QFETCH(QString, first);
        QFETCH(qint64, most);
        ScratchDir dir;
        Standins standins(dir.path()); // the translator the command names
        QVERIFY(dir.write("in.zeb", "zeb\n"));
        const QByteArray path = QFile::encodeName(dir.filePath("in.rpt"));
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
            else if (report == "sparse")
                made = dir.write("in.rpt", "") && QFile::resize(path, qint64(8) << 30);
            else if (report == "leading")
                made = dir.write("in.rpt",
                                 QByteArray(8 << 20, 'h').append("\r\n").repeated(9) + "data\n");
            else if (report == "lines")
                made = dir.write("in.rpt", QByteArray("header\n").repeated(9) +
                                               QByteArray("0123456789\n").repeated(1 << 20));
            else
                made = dir.write("in.rpt", QByteArray(64 << 20, 'x'));
            resetPeak();
            return made ? 0x100 : 0; // exit code 1: a report was written
        };
        ZEBReport::pageMemoryLimit = limit;
        QList<int> told; // the progress shown as the reading goes on
        ZEBReport::progressDialogMade = [&](QProgressDialog& progress) {
            auto* bar = progress.findChild<QProgressBar*>();
            connect(bar, &QProgressBar::valueChanged, bar,
                    [&progress, &told, bar, cancelAt](int value) {
                        if (value <= 0 || value == bar->maximum())
                            return;
                        told << value;
                        if (cancelAt > 0 && value >= cancelAt)
                            progress.cancel();
                    });
            if (cancelAt == 0)
                progress.cancel();
        };
        ZEBReport job(dir.filePath("in.zeb"), "1");
        QWidget page;
        QTemporaryFile said; // standard output, for the diagnostic lines
        QVERIFY(said.open());
        std::fflush(stdout);
        const int out = ::dup(1);
        ::dup2(said.handle(), 1);
        [[maybe_unused]] const qint64 peak = statusKiB("VmHWM:");
        const bool shown = job.showBlock(&page, 8);
        std::fflush(stdout);
        ::dup2(out, 1);
        ::close(out);
        QVERIFY(shown);
        QVERIFY(ran);
#ifndef __SANITIZE_ADDRESS__ // its quarantine keeps what was freed
        QVERIFY2(statusKiB("VmHWM:") - peak < 64 * 1024, "more than 64 MB to read a report");
#endif
        QVERIFY(said.seek(0));
        int skipping = 0; // the 9 leading lines of block 8, each cut short
        for (const QByteArray& line : said.readAll().split('\n'))
            if (line.startsWith("skipping: ") && ++skipping)
                QVERIFY2(line.size() <= 10 + 256 + 3, line.left(80));
        QCOMPARE(skipping, first.startsWith("This Block") ? 0 : 9);
        QVERIFY(cancelAt <= 0 || (!told.isEmpty() && told.last() >= cancelAt));
        for (qsizetype i = 0; cancelAt > 0 && i < told.size(); ++i) { // Cancel heard in time
            QVERIFY(told[i] - (i > 0 ? told[i - 1] : 0) <= 8 << 20);
            QVERIFY(told[i] <= cancelAt + (8 << 20));
        }
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
