// The command runner: the batch file it writes, the run through the console
// with the stand-in translators, and the cases where nothing may run.
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
    void runOutcome_data();
    void runOutcome();
    void nothingRuns_data();
    void nothingRuns();
};

void TestRunCommand::batchFileBytes()
{
    ScratchDir dir;
    Standins standins(dir.path());
    DialogAnswerer answers;
    QVERIFY(!runCommand("true \"b c\" a-rather-long-tail", "Translating QRT to ZEB ..."));
    // A second, shorter run replaces the file whole; the file stays behind.
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

void TestRunCommand::runOutcome_data()
{
    QTest::addColumn<int>("standinStatus");
    QTest::addColumn<int>("outcome");

    QTest::newRow("translator exits 0") << 0 << int(RunResult::Succeeded);
    QTest::newRow("translator exits 3") << 3 << int(RunResult::Failed);
}

void TestRunCommand::runOutcome()
{
    QFETCH(int, standinStatus);
    QFETCH(int, outcome);
    ScratchDir dir;
    Standins standins(dir.path());
    Standins::setStatus(standinStatus);
    QVERIFY(QDir(dir.path()).mkdir("Übung"));
    QVERIFY(dir.write("Übung/Träger 1.out", "QRT\n"));
    const QString input = dir.filePath("Übung/Träger 1.out");
    DialogAnswerer answers;
    const RunResult result = runCommand(
        QString("\"%1\" \"%2\"").arg(Standins::program("qrt2zeb-standin"), input), "Testing ...");
    VERIFY_DIALOGS(answers);
    QCOMPARE(int(result.outcome()), outcome);
    QCOMPARE(bool(result), outcome == RunResult::Failed);
    const auto runs = standins.runs();
    QCOMPARE(runs.size(), 1);
    QCOMPARE(runs[0].args, QStringList{input});
    QCOMPARE(runs[0].cwd, dir.path());
}

void TestRunCommand::nothingRuns_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("named");

    const QString translator = "\"%1/qrt2zeb-standin\" x";
    QTest::newRow("directory not writable") << "read-only" << translator << "%d";
    QTest::newRow("batch file cannot be opened")
        << "batch-is-dir" << translator << "%d/runtamsel.bat";
    QTest::newRow("line break in the command") << "" << translator + "\ntouch INJECTED"
                                               << "line break";
}

void TestRunCommand::nothingRuns()
{
    QFETCH(QString, where);
    QFETCH(QString, command);
    QFETCH(QString, named);
    ScratchDir scratch;
    Standins standins(scratch.path());
    QVERIFY(scratch.write("x", "QRT\n"));
    ReadOnlyDir locked;
    QString dir = scratch.path();
    if (where == "read-only") {
        QVERIFY2(locked.isValid(), "cannot make a directory read-only here");
        dir = locked.path();
    } else if (where == "batch-is-dir") {
        QVERIFY(QDir(dir).mkdir("runtamsel.bat"));
    }
    QVERIFY(QDir::setCurrent(dir));
    DialogAnswerer answers;
    answers.pressButton("OK");
    const RunResult result = runCommand(command.replace("%1", Standins::binDir()), "T");
    QDir::setCurrent(scratch.path());
    VERIFY_DIALOGS(answers);
    QCOMPARE(int(result.outcome()), int(RunResult::NotRun));
    QVERIFY(!result);
    QVERIFY(standins.runs().isEmpty());
    QVERIFY(!QFile::exists(scratch.filePath("INJECTED")));
    const auto& box = answers.seen().constFirst();
    QCOMPARE(box.title, QString("Unable To Run"));
    QCOMPARE(box.icon, int(QMessageBox::Warning));
    QCOMPARE(box.buttons, QStringList{"OK"});
    QVERIFY2(box.text.contains(named.replace("%d", dir)), qPrintable(box.text));
}

QTEST_MAIN(TestRunCommand)
#include "test_runcommand.moc"
