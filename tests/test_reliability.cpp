// Input that is not ordinary stays harmless: names that look like flags or
// hold blanks, quotes and dangling links; files the user may not write; and
// the signals a run can meet (a closed output, SIGTERM, SIGHUP). The browser's
// reports that a run did not write are tried in the browser's own test.
#include "qrtzebcore.h"
#include "runcommand.h"
#include "zebmtxlator.h"

#include "dialoganswerer.h"
#include "otheruser.h"
#include "qrtroad_helpers.h"
#include "scratchdir.h"
#include "standins.h"

#include "platform/console.h"

#include <QProcess>
#include <QPushButton>

#include <csignal>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

// Set in a copy of this program that runs one row as another user or
// under a signal; the row then acts in this directory.
const char* const childDir = "TAMSEL_RELIABILITY_DIR";

// Runs this program's current row again, acting in dir, as nobody (65534)
// when asked; the exit code, or -1 when a signal ended it.
int runRowAgain(const QString& dir, bool asNobody)
{
    const QString row = QString("%1:%2").arg(QTest::currentTestFunction(), QTest::currentDataTag());
    qputenv(childDir, QFile::encodeName(dir));
    // As nobody, from a copy that user can reach wherever the tree is.
    QByteArray output;
    const int status = asNobody ? OtherUser::run(row, {}, output)
                                : QProcess::execute(QCoreApplication::applicationFilePath(), {row});
    qunsetenv(childDir);
    if (asNobody && status != 0)
        qWarning("%s", output.constData());
    return status;
}

} // namespace

class TestReliability : public QObject
{
    Q_OBJECT

private slots:

    // Through the matrix tab: the stand-in writes out.mtx exactly when the
    // names reached it whole and in their places.
    void names_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("tool");    // a copy of the stand-in at this path, "" the usual
        QTest::addColumn<QString>("outLink"); // out.mtx is a link to this, "" none
        QTest::addColumn<QString>("line");    // the command line the info box shows; "": none
        // clang-format off
        QTest::newRow("input named -d")     << "-d" << "" << "" << "%T \"-d\" -o \"out.mtx\" -F";
        QTest::newRow("quote in the input") << "a\"b .zeb" << "" << "" << "%T \"a\\\"b .zeb\" -o \"out.mtx\" -F";
        QTest::newRow("translator under a blank") << "beam.zeb" << "Program Files/zeb2mtx" << "" << "\"%D/Program Files/zeb2mtx\" \"beam.zeb\" -o \"out.mtx\" -F";
        QTest::newRow("output a dangling link") << "beam.zeb" << "" << "gone.mtx" << "";
        // clang-format on
    }

    void names()
    {
        QFETCH(QString, input);
        QFETCH(QString, tool);
        QFETCH(QString, outLink);
        QFETCH(QString, line);
        ScratchDir dir;
        Standins standins(dir.path());
        QVERIFY(dir.write(input, "HXDB 1\nBODY a\n"));
        if (!tool.isEmpty()) {
            QVERIFY(QDir().mkpath(QFileInfo(tool).path()) &&
                    QFile::copy(Standins::program("zeb2mtx-standin"), dir.filePath(tool)));
            qputenv("OKT_ZEB2MTX", dir.filePath(tool).toLocal8Bit());
        }
        QVERIFY(outLink.isEmpty() || QFile::link(outLink, "out.mtx"));
        QVERIFY(QFile::link("elsewhere", "standin.log")); // the stand-in's log, planted
        ZEBMTXLator tab(nullptr, "ZEBMTXLator");
        apply(&tab, "inputCombo=" + input + ";outputLE=out");
        DialogAnswerer answers;
        answers.pressButton(line.isEmpty() ? "No" : "OK");
        QTest::mouseClick(tab.findChild<QPushButton*>(), Qt::LeftButton);
        VERIFY_DIALOGS(answers);
        line.replace("%T", Standins::program("zeb2mtx-standin")).replace("%D", dir.path());
        QCOMPARE(answers.boxes(),
                 QStringList{line.isEmpty()
                                 ? "Tamsel: A file called out.mtx already exists.\nDo you "
                                   "want to overwrite it? [&Yes|No] No/ in ZEBMTXLator"
                                 : "info: " + line + " [OK|Cancel] OK/Cancel"});
        QCOMPARE(dir.read("out.mtx").startsWith("ZEB2MTX stand-in matrix file"), !line.isEmpty());
        QVERIFY(!QFile::exists("elsewhere"));
        if (!line.isEmpty()) // the batch file shows the line as it ran
            QCOMPARE(dir.read("runtamsel.bat").split('\n').value(5), line.toLocal8Bit());
    }

    // Only the node list or the sketch name can make the options long; the
    // warning names the one that did. A full environment makes the limit small.
    void sketchNameTooLong()
    {
        ScratchDir dir;
        Standins standins(dir.path());
        long room = ::sysconf(_SC_ARG_MAX) - 64 * 1024 - 8 * 1024;
        for (char** e = environ; *e; ++e)
            room -= long(std::strlen(*e) + 1 + sizeof(char*));
        qputenv("TAMSEL_FILLER", QByteArray(room, 'f'));
        QRTZEBCore core(nullptr, "QRTZEBLator_Core");
        apply(&core, "tab=1;sketchCombo=" + QString(20000, 'x'));
        DialogAnswerer answers;
        answers.pressButton("OK");
        QVERIFY(!core.putOptions());
        qunsetenv("TAMSEL_FILLER");
        VERIFY_DIALOGS(answers);
        QVERIFY(answers.boxes().value(0).contains("\nShorten the sketch file name. Nothing"));
    }

    // A batch or script file the user may not write is refused as before the
    // writer replaced files, and left as it was; one that may be written keeps
    // its mode. Read-only bits bind only others than root: that row runs as
    // nobody, the immutable one as root.
    void readOnlyFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("how"); // "read-only" (as nobody), "immutable" (root), "0640"
        QTest::addColumn<QString>("box");
        // clang-format off
        const QString bat = "Unable To Run: The file %D/runtamsel.bat cannot be written:\n%1\nNothing was run. [OK] OK/OK";
        const QString script = "Unable To Write: Unable to write zeb write options to current directory.  Check disk space.\n%1 [OK] OK/OK";
        QTest::newRow("batch: read-only: no run")  << "runtamsel.bat" << "read-only" << bat.arg("Permission denied");
        QTest::newRow("batch: immutable: no run")  << "runtamsel.bat" << "immutable" << bat.arg("Operation not permitted");
        QTest::newRow("batch: mode kept")          << "runtamsel.bat" << "0640"      << "";
        QTest::newRow("script: read-only")         << "zebscript.dat" << "read-only" << script.arg("Permission denied");
        QTest::newRow("script: immutable")         << "zebscript.dat" << "immutable" << script.arg("Operation not permitted");
        QTest::newRow("script: immutable, no sketch name") << "zebscript.dat" << "immutable" << script.arg("Operation not permitted");
        QTest::newRow("script: mode kept")         << "zebscript.dat" << "0640"      << "";
        // clang-format on
    }

    void readOnlyFiles()
    {
        QFETCH(QString, file);
        QFETCH(QString, how);
        QFETCH(QString, box);
        if (how == "read-only" && !qEnvironmentVariableIsSet(childDir)) {
            if (::geteuid() != 0)
                QSKIP("needs root to act as another user");
            QTemporaryDir home;
            QVERIFY(::chown(qPrintable(home.path()), 65534, 65534) == 0);
            QCOMPARE(runRowAgain(home.path(), true), 0);
            return;
        }
        ScratchDir scratch;
        const QString dir = qEnvironmentVariable(childDir, scratch.path());
        QVERIFY(QDir::setCurrent(dir));
        Standins standins(dir);
        QFile old(file);
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old\n") == 4);
        old.close();
        QVERIFY(::chmod(qPrintable(file), how == "read-only" ? 0444 : 0640) == 0);
        if (how == "immutable" && QProcess::execute("chattr", {"+i", file}) != 0)
            QSKIP("needs chattr +i (root) for an immutable file");
        DialogAnswerer answers;
        if (!box.isEmpty())
            answers.pressButton("OK");
        if (file == "zebscript.dat") {
            QRTZEBCore core(nullptr, "QRTZEBLator_Core");
            if (QByteArray(QTest::currentDataTag()).endsWith("no sketch name"))
                apply(&core, "tab=1"); // the file is opened before the name is missed
            if (box.isEmpty())
                answers.handleDialog([](QWidget* list) { list->close(); });
            QTest::mouseClick(widget(&core, "Generate a \"zebscript.dat\" file"), Qt::LeftButton);
        } else {
            QCOMPARE(runCommand("true", "T").wasRun(), box.isEmpty());
        }
        QProcess::execute("chattr", {"-i", file});
        VERIFY_DIALOGS(answers);
        QCOMPARE(answers.boxes().join('|'), QString(box).replace("%D", dir));
        QCOMPARE(QFile(file).size() == 4, !box.isEmpty()); // left as it was
        struct stat st = {};
        QVERIFY(::stat(qPrintable(file), &st) == 0);
        QCOMPARE(st.st_mode & 07777, how == "read-only" ? 0444u : 0640u);
    }

    // The console program on a standard output nobody reads: its batch goes on
    // to the end, and the program it starts gets SIGPIPE back at its default.
    void closedOutput()
    {
        ScratchDir dir;
        QVERIFY(dir.write("run.bat", "sh -c \"grep SigIgn /proc/self/status > ignored\"\n"
                                     "echo one line too many\n"));
        int pipeEnds[2];
        QVERIFY(::pipe(pipeEnds) == 0);
        ::close(pipeEnds[0]);
        QProcess console;
        console.setChildProcessModifier([&] { ::dup2(pipeEnds[1], 1); });
        console.start(Standins::program("tamsel-cmd"),
                      {"--status-file", dir.filePath("status"), dir.filePath("run.bat")});
        QVERIFY(console.waitForFinished(30000));
        ::close(pipeEnds[1]);
        QCOMPARE(console.exitStatus(), QProcess::NormalExit);
        QCOMPARE(dir.read("status"), QByteArray("0\n"));
        const QByteArray ignored = dir.read("ignored"); // "SigIgn:\t<hex mask>"
        QVERIFY(ignored.startsWith("SigIgn:") &&
                !(ignored.mid(7).trimmed().toULongLong(nullptr, 16) & (1 << (SIGPIPE - 1))));
    }

    // Started with standard streams closed (a launcher, cron), the program
    // puts /dev/null on them before it opens anything, or its first file
    // would take what it prints. tamsel-cmd and the stand-ins start alike.
    void closedStandardStreams()
    {
        const QStringList closed{"0", "1", "2"}; // tamsel <&- >&- 2>&-
        ScratchDir dir;
        Standins standins(dir.path());
        QProcess tamsel;
        tamsel.setChildProcessModifier([&] {
            for (const QString& fd : closed)
                ::close(fd.toInt());
        });
        tamsel.start(Standins::program("tamsel"));
        QVERIFY(tamsel.waitForStarted());
        const auto targets = [&] { // of the closed ones, while the window is up
            QStringList t;
            for (const QString& fd : closed)
                t << QFile::symLinkTarget(
                    QString("/proc/%1/fd/%2").arg(tamsel.processId()).arg(fd));
            return t;
        };
        const QStringList nulls(closed.size(), "/dev/null");
        for (int i = 0; i < 500 && targets() != nulls; ++i)
            QTest::qWait(20);
        const QStringList seen = targets();
        tamsel.kill();
        tamsel.waitForFinished();
        QCOMPARE(seen, nulls);
    }

    // Ended by a signal while its terminal runs, the program takes its private
    // directory with it and leaves the translator to finish; a TMPDIR that
    // cannot take one does not cost the window.
    // Each row runs in a child: the signal ends the whole program.
    void consoleTmpdir_data()
    {
        QTest::addColumn<int>("signal"); // SIGHUP from the terminal, SIGTERM from the batch
        QTest::newRow("SIGTERM") << int(SIGTERM);
        QTest::newRow("SIGHUP") << int(SIGHUP);
        QTest::newRow("unusable TMPDIR") << 0;
    }

    void consoleTmpdir()
    {
        QFETCH(int, signal);
        if (qEnvironmentVariableIsSet(childDir)) {
            const QString dir = qEnvironmentVariable(childDir);
            Standins standins(dir);
            qputenv("TMPDIR", QFile::encodeName(dir + (signal ? "/tmp" : "/no such dir")));
            // A SIGTERM comes from the translator, which goes on to its end.
            const QByteArray pid = QByteArray::number(QCoreApplication::applicationPid());
            qputenv("TAMSEL_TERMINAL",
                    signal == SIGHUP
                        ? "sh -c \"kill -1 $PPID; sleep 5\""
                        : "sh -c \"touch 'terminal used'; exec \\\"$0\\\" \\\"$@\\\"\"");
            const std::string batch =
                signal ? "sh -c \"kill -15 " + pid.toStdString() + "; touch 'left running'\"\n"
                       : "sh -c \"exit 3\"\n";
            QCOMPARE(platform::runInConsole(batch, Standins::program("tamsel-cmd").toStdString()),
                     3 << 8);
            QVERIFY(signal == 0 && QFile::exists(dir + "/terminal used"));
            return;
        }
        ScratchDir dir;
        QVERIFY(QDir().mkdir("tmp"));
        QCOMPARE(runRowAgain(dir.path(), false), signal ? -1 : 0);
        if (signal == SIGTERM)
            QTRY_VERIFY(QFile::exists("left running"));
        // Once the console left running is done too.
        QTRY_COMPARE(QDir("tmp").entryList({"tamsel-*"}, QDir::AllEntries | QDir::Hidden),
                     QStringList());
    }
};

QTEST_MAIN(TestReliability)
#include "test_reliability.moc"
