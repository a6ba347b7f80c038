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
    void run_data();
    void run();
};

void TestRunCommand::run_data()
{
    QTest::addColumn<QString>("where"); // "locked": read-only, "bat dir": the batch name is taken
    QTest::addColumn<QString>("tail");  // after the translator's command line
    QTest::addColumn<int>("outcome");   // failed: the translator exits 3
    QTest::addColumn<QString>("named"); // in the message when nothing runs
    const int ok = RunResult::Succeeded, failed = RunResult::Failed, notRun = RunResult::NotRun;
    // clang-format off
    QTest::newRow("translator exits 0")        << ""        << ""                 << ok     << "";
    QTest::newRow("translator exits 3")        << ""        << ""                 << failed << "";
    QTest::newRow("directory not writable")    << "locked"  << ""                 << notRun << "%d is not writable";
    QTest::newRow("batch name is a directory") << "bat dir" << ""                 << notRun << "%d/runtamsel.bat";
    QTest::newRow("line break in the command") << ""        << "\ntouch INJECTED" << notRun << "line break";
    // clang-format on
}

void TestRunCommand::run()
{
    QFETCH(QString, where);
    QFETCH(QString, tail);
    QFETCH(int, outcome);
    QFETCH(QString, named);
    ScratchDir scratch;
    Standins standins(scratch.path());
    Standins::setStatus(outcome == RunResult::Failed ? 3 : 0);
    ReadOnlyDir locked;
    QVERIFY2(where != "locked" || locked.isValid(), "cannot make a directory read-only here");
    const QString dir = where == "locked" ? locked.path() : scratch.path();
    QVERIFY(QDir().mkdir("Übung") && scratch.write("Übung/Träger 1.out", "QRT\n"));
    // A longer file from before is replaced whole.
    QVERIFY(where == "bat dir" ? QDir().mkdir("runtamsel.bat")
                               : scratch.write("runtamsel.bat", QByteArray(2000, 'x')));
    const QString input = scratch.filePath("Übung/Träger 1.out");
    const QString command = '"' + Standins::program("qrt2zeb-standin") + "\" \"" + input + '"';
    DialogAnswerer answers;
    if (!named.isEmpty())
        answers.pressButton("OK");
    QVERIFY(QDir::setCurrent(dir));
    const RunResult result = runCommand(command + tail, "Prüfen ...");
    QDir::setCurrent(scratch.path());
    VERIFY_DIALOGS(answers);
    QCOMPARE(int(result.outcome()), outcome);
    const auto runs = standins.runs();
    if (!named.isEmpty()) {
        QVERIFY(runs.isEmpty() && !QFile::exists(scratch.filePath("INJECTED")));
        const auto& box = answers.seen().constFirst();
        QCOMPARE(box.title + " " + box.buttons.join(','), QString("Unable To Run OK"));
        QCOMPARE(box.icon, int(QMessageBox::Warning));
        QVERIFY2(box.text.contains(named.replace("%d", dir)), qPrintable(box.text));
        return;
    }
    QCOMPARE(runs.size(), 1);
    QCOMPARE(runs[0].args, QStringList{input});
    // Title and command go in as the locale's 8-bit text, as they stand.
    const QString batch = "@echo off\necho Begin Prüfen ...\necho.\necho command : %1\necho.\n"
                          "%1\necho.\necho End Prüfen ...\necho.\npause\n";
    QCOMPARE(scratch.read("runtamsel.bat"), batch.arg(command).toLocal8Bit());
}

QTEST_MAIN(TestRunCommand)
#include "test_runcommand.moc"
