// The command runner: the batch file it writes, the run through the console
// with the stand-in translators, and the places where nothing can run.
#include "runcommand.h"

#include "dialoganswerer.h"
#include "readonlydir.h"
#include "scratchdir.h"
#include "standins.h"

#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QTest>

class TestRunCommand : public QObject
{
    Q_OBJECT

private slots:
    void batchFileBytes();
    void batchFileIsReplacedAndKept();
    void runOutcome_data();
    void runOutcome();
    void runHappensInTheWorkingDirectory();
    void unwritableDirectoryRunsNothing();
    void unopenableBatchFileRunsNothing();
};

void TestRunCommand::batchFileBytes()
{
    ScratchDir dir;
    Standins standins(dir.path());
    DialogAnswerer answers;
    QVERIFY(!runCommand("true \"b c\"", "Translating QRT to ZEB ..."));
    QCOMPARE(dir.read("runtamsel.bat"), QByteArray("@echo off\n"
                                                   "echo Begin Translating QRT to ZEB ...\n"
                                                   "echo.\n"
                                                   "echo command : true \"b c\"\n"
                                                   "echo.\n"
                                                   "true \"b c\"\n"
                                                   "echo.\n"
                                                   "echo End Translating QRT to ZEB ...\n"
                                                   "echo.\n"
                                                   "pause\n"));
    // Title and command go in as the locale's 8-bit text, unquoted.
    QVERIFY(!runCommand("true Träger 1.out", "Ä"));
    QVERIFY(dir.read("runtamsel.bat").contains("echo command : true Träger 1.out\n"));
    QVERIFY(dir.read("runtamsel.bat").contains("echo End Ä\n"));
    VERIFY_DIALOGS(answers);
}

void TestRunCommand::batchFileIsReplacedAndKept()
{
    ScratchDir dir;
    Standins standins(dir.path());
    DialogAnswerer answers;
    QVERIFY(!runCommand("true a-rather-long-command-line-of-many-characters", "first"));
    const QByteArray first = dir.read("runtamsel.bat");
    QVERIFY(!runCommand("true", "t"));
    const QByteArray second = dir.read("runtamsel.bat");
    QVERIFY(!second.contains("long"));
    QVERIFY(second.size() < first.size());
    QVERIFY(second.startsWith("@echo off\necho Begin t\n"));
    QVERIFY(second.endsWith("echo End t\necho.\npause\n"));
    VERIFY_DIALOGS(answers);
}

void TestRunCommand::runOutcome_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("standinStatus");
    QTest::addColumn<int>("outcome");

    QTest::newRow("translator exits 0")
        << "\"%1/qrt2zeb-standin\" \"x.out\"" << 0 << int(RunResult::Succeeded);
    QTest::newRow("translator exits 3")
        << "\"%1/qrt2zeb-standin\" \"x.out\"" << 3 << int(RunResult::Failed);
    QTest::newRow("translator killed")
        << "sh -c \"kill -TERM $$\"" << 0 << int(RunResult::Failed);
    QTest::newRow("translator missing") << "\"%1/no-such-translator\" x" << 0
                                        << int(RunResult::Failed);
}

void TestRunCommand::runOutcome()
{
    QFETCH(QString, command);
    QFETCH(int, standinStatus);
    QFETCH(int, outcome);
    ScratchDir dir;
    Standins standins(dir.path());
    Standins::setStatus(standinStatus);
    QVERIFY(dir.write("x.out", "QRT\n"));
    DialogAnswerer answers;
    const RunResult result = runCommand(command.replace("%1", Standins::binDir()), "Testing ...");
    QCOMPARE(int(result.outcome()), outcome);
    QCOMPARE(bool(result), outcome == RunResult::Failed);
    QVERIFY(result.wasRun());
    VERIFY_DIALOGS(answers);
}

void TestRunCommand::runHappensInTheWorkingDirectory()
{
    ScratchDir dir;
    Standins standins(dir.path());
    DialogAnswerer answers;
    QVERIFY(QDir(dir.path()).mkdir("Übung"));
    QVERIFY(dir.write("Übung/Träger 1.out", "QRT\n"));
    const QString input = dir.filePath("Übung/Träger 1.out");
    QVERIFY(!runCommand(QString("\"%1\" \"%2\"").arg(Standins::program("qrt2zeb-standin"), input),
                        "Translating QRT to ZEB ..."));
    const auto runs = standins.runs();
    QCOMPARE(runs.size(), 1);
    QCOMPARE(runs[0].args, QStringList{input});
    QCOMPARE(runs[0].cwd, dir.path());
    QVERIFY(QFile::exists(dir.filePath("runtamsel.bat")));
    VERIFY_DIALOGS(answers);
}

void TestRunCommand::unwritableDirectoryRunsNothing()
{
    ScratchDir logDir;
    Standins standins(logDir.path());
    ReadOnlyDir locked;
    QVERIFY2(locked.isValid(), "cannot make a directory read-only here");
    QVERIFY(QDir::setCurrent(locked.path()));
    DialogAnswerer answers;
    answers.pressButton("OK");
    const RunResult result =
        runCommand("\"" + Standins::program("qrt2zeb-standin") + "\" x", "Translating ...");
    QDir::setCurrent(logDir.path());
    VERIFY_DIALOGS(answers);
    QCOMPARE(int(result.outcome()), int(RunResult::NotRun));
    QVERIFY(!result);
    QVERIFY(standins.runs().isEmpty());
    const auto& box = answers.seen().constFirst();
    QCOMPARE(box.title, QString("Unable To Run"));
    QVERIFY2(box.text.contains(locked.path()), qPrintable(box.text));
    QCOMPARE(box.icon, int(QMessageBox::Warning));
}

void TestRunCommand::unopenableBatchFileRunsNothing()
{
    ScratchDir dir;
    Standins standins(dir.path());
    // A directory of that name cannot be opened for writing.
    QVERIFY(QDir(dir.path()).mkdir("runtamsel.bat"));
    DialogAnswerer answers;
    answers.pressButton("OK");
    const RunResult result =
        runCommand("\"" + Standins::program("qrt2zeb-standin") + "\" x", "Translating ...");
    VERIFY_DIALOGS(answers);
    QCOMPARE(int(result.outcome()), int(RunResult::NotRun));
    QVERIFY(standins.runs().isEmpty());
    const auto& box = answers.seen().constFirst();
    QCOMPARE(box.title, QString("Unable To Run"));
    QVERIFY2(box.text.contains(dir.filePath("runtamsel.bat")), qPrintable(box.text));
    QCOMPARE(box.buttons, QStringList{"OK"});
}

QTEST_MAIN(TestRunCommand)
#include "test_runcommand.moc"
