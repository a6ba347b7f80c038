// Input that is not ordinary stays harmless: names that look like flags or
// hold blanks, quotes and dangling links; reports that a run did not write,
// that are links or that live in a deleted directory; files the user may not
// write; and the signals a run can meet (a closed output, SIGTERM, SIGHUP).
#include "qrtzebcore.h"
#include "runcommand.h"
#include "zebbrowser.h"
#include "zebmtxlator.h"
#include "zebreport.h"

#include "blockview.h"
#include "dialoganswerer.h"
#include "otheruser.h"
#include "qmlistdialog.h"
#include "qrtroad_helpers.h"
#include "readonlydir.h"
#include "scratchdir.h"
#include "standins.h"

#include "platform/console.h"

#include "app_qmfilelineedit.h"

#include <QCheckBox>
#include <QProcess>
#include <QPushButton>
#include <QTextEdit>

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

// Set in a copy of this program that runs one row as another user or
// under a signal; the row then acts in this directory.
const char* const childDir = "TAMSEL_RELIABILITY_DIR";

// Runs this program's current row again, with the environment given, as
// nobody (65534) when asked; the exit code, or -1 when a signal ended it.
int runRowAgain(const QString& dir, bool asNobody, const QStringList& env = {})
{
    QProcessEnvironment extra;
    extra.insert(childDir, dir);
    for (const QString& entry : env)
        extra.insert(entry.section('=', 0, 0), entry.section('=', 1));
    const QString row = QString("%1:%2").arg(QTest::currentTestFunction(), QTest::currentDataTag());
    if (asNobody) { // from a copy that user can reach, wherever the tree is
        QByteArray output;
        const int status = OtherUser::run(row, extra, output);
        if (status != 0)
            qWarning("%s", output.constData());
        return status;
    }
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(extra);
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.start(QCoreApplication::applicationFilePath(), {row});
    child.waitForFinished(60000);
    return child.exitStatus() == QProcess::CrashExit ? -1 : child.exitCode();
}

QString listedReports()
{
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (auto* list = qobject_cast<QMListDialog*>(w)) {
            const QString text = list->findChild<QTextEdit*>()->toPlainText();
            delete list;
            return text;
        }
    }
    return "(no list)";
}

// "+i" makes a file immutable (root only), "-i" undoes it.
bool chattr(const char* flag, const QString& path)
{
    return QProcess::execute("chattr", {flag, path}) == 0;
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
        QTest::newRow("input named -O")     << "-O" << "" << "" << "%T \"-O\" -o \"out.mtx\" -F";
        QTest::newRow("quote in the input") << "a\"b .zeb" << "" << "" << "%T \"a\\\"b .zeb\" -o \"out.mtx\" -F";
        QTest::newRow("translator under a blank") << "beam.zeb" << "Program Files/zeb2mtx" << ""
            << "\"%D/Program Files/zeb2mtx\" \"beam.zeb\" -o \"out.mtx\" -F";
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
            QVERIFY(QDir().mkpath(QFileInfo(tool).path()));
            QVERIFY(QFile::copy(Standins::program("zeb2mtx-standin"), dir.filePath(tool)));
            qputenv("OKT_ZEB2MTX", dir.filePath(tool).toLocal8Bit());
        }
        QVERIFY(outLink.isEmpty() || QFile::link(outLink, "out.mtx"));
        ZEBMTXLator tab(nullptr, "ZEBMTXLator");
        tab.findChild<QLineEdit*>("inputCombo")->setText(input);
        tab.findChild<QLineEdit*>("outputLE")->setText("out");
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

    // The report road (list) and the page road (page) of the browser with a
    // translator that does not write what it was asked for.
    void reports_data()
    {
        QTest::addColumn<QString>("road");  // "list" or "page"
        QTest::addColumn<QString>("tool");  // a script for the translator, "" the stand-in
        QTest::addColumn<QString>("place"); // "link", "immutable", "deleted" or ""
        QTest::addColumn<QString>("shown"); // the list's text, or the page's name
        const QString name = "%D/beam_12111530_block8.rpt";
        const QString kill = "#!/bin/sh\nkill -KILL $$\n";
        // clang-format off
        QTest::newRow("page: killed, stale report")  << "page" << kill << "" << "error parsing block message";
        QTest::newRow("page: exit 1, stale report")  << "page" << "#!/bin/sh\nexit 1\n" << "" << "error parsing block message";
        QTest::newRow("page: link planted as report") << "page" << "" << "link" << "text viewer";
        QTest::newRow("list: killed")    << "list" << kill << "" << "\n" + name + " (not written: ended by signal 9, Killed)";
        QTest::newRow("list: immutable") << "list" << "" << "immutable" << "\n" + name + " (not written: Operation not permitted)";
        QTest::newRow("list: link planted as report") << "list" << "" << "link" << "\n" + name;
        QTest::newRow("list: working directory deleted") << "list" << "" << "deleted"
            << "Unable To Run: The working directory %D/gone no longer exists.\nNothing was run. [OK] OK/OK";
        // clang-format on
    }

    void reports()
    {
        QFETCH(QString, road);
        QFETCH(QString, tool);
        QFETCH(QString, place);
        QFETCH(QString, shown);
        ScratchDir dir;
        Standins standins(dir.path());
        ZEBReport::clock = [] { return QDateTime(QDate(2025, 12, 11), QTime(15, 30, 59)); };
        if (!tool.isEmpty()) {
            QVERIFY(dir.write("tool", tool.toUtf8(), true));
            qputenv("OKT_ZEB2MTX", dir.filePath("tool").toLocal8Bit());
        }
        const QString report = road == "page" ? "beam.rpt" : "beam_12111530_block8.rpt";
        QVERIFY(dir.write("victim", "keep"));
        QVERIFY(place == "link" ? QFile::link("victim", report)
                                : dir.write(report, "from before\n"));
        if (place == "immutable" && !chattr("+i", dir.filePath(report)))
            QSKIP("needs chattr +i (root) for an immutable report");
        const QString input = Standins::examplesDir() + "/beam.zeb";
        if (road == "page") {
            ZEBReport job(input, "1");
            QWidget page;
            QVERIFY(job.showBlock(&page, 8));
            QVERIFY(page.findChild<BlockView*>(shown));
        } else {
            ZEBBrowser tab(nullptr, "ZEBBrowser");
            tab.findChild<QMFileLineEdit*>("inputFile")->setText(input);
            QMetaObject::invokeMethod(&tab, "clearBlockBoxes"); // the Clear button
            for (auto* box : tab.findChildren<QCheckBox*>())
                box->setChecked(box->toolTip() == "Block #8");
            DialogAnswerer answers;
            if (place == "deleted") {
                answers.pressButton("OK");
                QVERIFY(QDir().mkdir("gone") && QDir::setCurrent("gone") &&
                        QDir().rmdir(dir.filePath("gone")));
            }
            tab.generate(false); // the report button
            QDir::setCurrent(dir.path());
            VERIFY_DIALOGS(answers);
            const QString text = place == "deleted" ? answers.boxes().value(0) : listedReports();
            chattr("-i", dir.filePath(report));
            QCOMPARE(text, QString(shown).replace("%D", dir.path()));
            QCOMPARE(standins.runs().size(), place == "deleted" ? 0 : tool.isEmpty() ? 1 : 0);
        }
        ZEBReport::clock = [] { return QDateTime::currentDateTime(); };
        QCOMPARE(dir.read("victim"), QByteArray("keep")); // never written through a link
        QCOMPARE(QFileInfo(dir.filePath(report)).isSymLink(), false);
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
        const QString bat =
            "Unable To Run: The file %D/runtamsel.bat cannot be written:\n%1\nNothing "
            "was run. [OK] OK/OK";
        const QString script = "Unable To Write: Unable to write zeb write options to current "
                               "directory.  Check disk space.\n%1 [OK] OK/OK";
        // clang-format off
        QTest::newRow("batch: read-only: no run")  << "runtamsel.bat" << "read-only" << bat.arg("Permission denied");
        QTest::newRow("batch: immutable: no run")  << "runtamsel.bat" << "immutable" << bat.arg("Operation not permitted");
        QTest::newRow("batch: mode kept")          << "runtamsel.bat" << "0640"      << "";
        QTest::newRow("script: read-only")         << "zebscript.dat" << "read-only" << script.arg("Permission denied");
        QTest::newRow("script: immutable")         << "zebscript.dat" << "immutable" << script.arg("Operation not permitted");
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
        const QString dir =
            qEnvironmentVariableIsSet(childDir) ? qEnvironmentVariable(childDir) : scratch.path();
        QVERIFY(QDir::setCurrent(dir));
        Standins standins(dir);
        QFile old(file);
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old\n") == 4);
        old.close();
        QVERIFY(::chmod(qPrintable(file), how == "read-only" ? 0444 : 0640) == 0);
        if (how == "immutable" && !chattr("+i", file))
            QSKIP("needs chattr +i (root) for an immutable file");
        DialogAnswerer answers;
        if (!box.isEmpty())
            answers.pressButton("OK");
        if (file == "zebscript.dat") {
            QRTZEBCore core(nullptr, "QRTZEBLator_Core");
            if (box.isEmpty())
                answers.handleDialog([](QWidget* list) { list->close(); });
            QTest::mouseClick(widget(&core, "Generate a \"zebscript.dat\" file"), Qt::LeftButton);
        } else {
            const RunResult result = runCommand("true", "T");
            QCOMPARE(result.wasRun(), box.isEmpty());
        }
        chattr("-i", file);
        VERIFY_DIALOGS(answers);
        QCOMPARE(answers.boxes().join('|'), QString(box).replace("%D", dir));
        QCOMPARE(QFile(file).size() == 4, !box.isEmpty()); // left as it was
        struct stat st {
        };
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
        QVERIFY(dir.read("ignored").startsWith("SigIgn:"));
        QCOMPARE(dir.read("ignored").mid(7).trimmed().toULongLong(nullptr, 16) &
                     (1 << (SIGPIPE - 1)),
                 0u);
    }

    // Ended by a signal while its terminal runs, the program takes its private
    // directory with it.
    void signalDuringRun_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM") << int(SIGTERM);
        QTest::newRow("SIGHUP") << int(SIGHUP);
    }

    void signalDuringRun()
    {
        QFETCH(int, signal);
        if (qEnvironmentVariableIsSet(childDir)) {
            Standins standins(qEnvironmentVariable(childDir));
            qputenv("TAMSEL_TERMINAL",
                    "sh -c \"kill -" + QByteArray::number(signal) + " $PPID; sleep 5\"");
            platform::runInConsole("echo\n", Standins::program("tamsel-cmd").toStdString());
            QFAIL("not ended by the signal");
        }
        ScratchDir dir;
        QVERIFY(QDir().mkdir("tmp"));
        QCOMPARE(runRowAgain(dir.path(), false, {"TMPDIR=" + dir.filePath("tmp")}), -1);
        QCOMPARE(QDir(dir.filePath("tmp")).entryList({"tamsel-*"}, QDir::AllEntries | QDir::Hidden),
                 QStringList());
    }

    // A TMPDIR that cannot take the private directory does not cost the window.
    void unusableTmpdir()
    {
        ScratchDir dir;
        Standins standins(dir.path());
        qputenv("TAMSEL_TERMINAL", "sh -c \"touch 'terminal used'; exec \\\"$0\\\" \\\"$@\\\"\"");
        const QByteArray tmpdir = qgetenv("TMPDIR");
        qputenv("TMPDIR", dir.filePath("no such dir").toLocal8Bit());
        const int status = platform::runInConsole("sh -c \"exit 3\"\n",
                                                  Standins::program("tamsel-cmd").toStdString());
        tmpdir.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", tmpdir);
        QCOMPARE(status, 3 << 8);
        QVERIFY(QFile::exists(dir.filePath("terminal used")));
    }
};

QTEST_MAIN(TestReliability)
#include "test_reliability.moc"
