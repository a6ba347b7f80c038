// The command runner: the batch file it writes, the run through the console,
// inline or handed to a terminal, with the stand-in translators, the status
// it reports, and the cases where nothing may run.
#include "runcommand.h"

#include "dialoganswerer.h"
#include "fulldir.h"
#include "otheruser.h"
#include "readonlydir.h"
#include "scratchdir.h"
#include "standins.h"

#include <QtWidgets>

#include <optional>
#include <sys/stat.h>
#include <unistd.h>

class TestRunCommand : public QObject
{
    Q_OBJECT

private slots:
    void run_data()
    {
        // The fake terminals start the console in "/" and have its translator exit
        // with 4; inline it exits with 0, so the status tells where it ran.
        QTest::addColumn<QString>("terminal"); // "": none, the console runs inline
        QTest::addColumn<QString>("where");    // "locked": read-only, "bat dir": name taken
        QTest::addColumn<QString>("tail");     // after the translator's command line
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("outcome");
        QTest::addColumn<QString>("named"); // in the message when nothing runs
        const int ok = RunResult::Succeeded, failed = RunResult::Failed, notRun = RunResult::NotRun;
        const QString cd = "#!/bin/sh\ncd /\n", four = "TAMSEL_STANDIN_STATUS=4 \"$@\" >/dev/null";
        // clang-format off
        QTest::newRow("inline")                 << ""                       << "" << "" << 0 << ok << "";
        QTest::newRow("terminal returns early") << cd + four + " &\n"       << "" << "" << 0x400 << failed << "";
        QTest::newRow("terminal waits")         << cd + four + "\nexit 0\n" << "" << "" << 0x400 << failed << "";
        QTest::newRow("never started: inline")  << "#!/bin/sh\nexit 1\n"    << "" << "" << 0 << ok << "";
        // Given up on, the late console must not run the batch a second time.
        QTest::newRow("started too late: inline") << "#!/bin/sh\n(sleep 4; " + four + "; touch late) 2>&1 &\n" << "" << "" << 0 << ok << "";
        QTest::newRow("killed before it tells") // on a slow batch of its own
            << cd + "echo 'sh -c \"sleep 9\"' > \"$3/slow.bat\"\nsetsid \"$1\" \"$2\" \"$3\" \"$4\" \"$5\" "
               "\"$3/slow.bat\" >/dev/null &\nwhile [ ! -e \"$5.started\" ]; do sleep 0.05; done\n"
               "kill -KILL -$!\n"                                      << "" << "" << 0x100 << failed << "";
        // The console runs its own copy: a swapped file changes nothing.
        QTest::newRow("batch swapped before it runs") << "#!/bin/sh\necho 'touch INJECTED' > \"$3/runtamsel.bat\"\nexec \"$@\"\n" << "" << "" << 0 << ok << "";
        // The status is handed over before the pause.
        QTest::newRow("window closed at the pause") << "#!/bin/sh\nexec \"$TAMSEL_BIN_DIR/hangup-terminal\" \"$@\"\n" << "" << "" << 0 << ok << "";
        QTest::newRow("link planted as batch file") << "" << "link" << ""          << 0 << ok << "";
        QTest::newRow("a colleague's batch file")  << "" << "colleague" << ""     << 0 << ok << "";
        QTest::newRow("low 16 bits 0: success") << cd + "\"$@\" >/dev/null\necho 65536 > \"$5\"\n" << "" << "" << 0x10000 << ok << "";
        QTest::newRow("directory not writable") << "" << "locked"  << ""                 << 0 << notRun << "%d is not writable";
        QTest::newRow("batch name is a dir")    << "" << "bat dir" << ""                 << 0 << notRun << "%d/runtamsel.bat";
        QTest::newRow("line break in command")  << "" << ""        << "\ntouch INJECTED" << 0 << notRun << "line break";
        QTest::newRow("disk full: old file kept") << "" << "full"  << ""                 << 0 << notRun << "%d/runtamsel.bat cannot be written:\nNo space left on device";
        QTest::newRow("working dir deleted")    << "" << "deleted" << ""                 << 0 << notRun << "%d no longer exists";
        // clang-format on
    }

    void run()
    {
        QFETCH(QString, terminal);
        QFETCH(QString, where);
        QFETCH(QString, tail);
        QFETCH(QString, named);
        ScratchDir scratch;
        Standins standins(scratch.path());
        QVERIFY(scratch.write("term", terminal.toUtf8(), true));
        if (!terminal.isEmpty())
            qputenv("TAMSEL_TERMINAL", scratch.filePath("term").toLocal8Bit());
        ReadOnlyDir locked;
        QVERIFY2(where != "locked" || locked.isValid(), "cannot make a directory read-only here");
        std::optional<FullDir> full;
        if (where == "full" && !full.emplace("runtamsel.bat").isValid()) {
            if (::geteuid() != 0)
                QSKIP("needs root to mount a full file system");
            QFAIL("cannot mount a full file system");
        }
        const QString dir = where == "locked"    ? locked.path()
                            : full               ? full->path()
                            : where == "deleted" ? scratch.filePath("gone")
                                                 : scratch.path();
        // No shell: a name full of shell syntax reaches the translator as it is.
        const QString name = "Übung/$(id);Träger 'q' `id`|x.out";
        QVERIFY(QDir().mkdir("Übung") && scratch.write(name, "QRT\n"));
        // A longer file from before is replaced whole.
        QVERIFY(where == "bat dir" ? QDir().mkdir("runtamsel.bat")
                : where == "link"
                    ? scratch.write("victim", "keep") && QFile::link("victim", "runtamsel.bat")
                    : scratch.write("runtamsel.bat", QByteArray(2000, 'x')));
        // Replaced by root, it stays the colleague's and the group's.
        QVERIFY(where != "colleague" || ::chown("runtamsel.bat", 1234, 4321) == 0);
        const QString input = scratch.filePath(name);
        const QString command = '"' + Standins::program("qrt2zeb-standin") + "\" \"" + input + '"';
        DialogAnswerer answers;
        if (!named.isEmpty())
            answers.pressButton("OK");
        QVERIFY(where != "deleted" || QDir().mkdir(dir));
        QVERIFY(QDir::setCurrent(dir));
        QVERIFY(where != "deleted" || QDir().rmdir(dir));
        const RunResult result = runCommand(command + tail, "Prüfen ...");
        QDir::setCurrent(scratch.path());
        VERIFY_DIALOGS(answers);
        QTEST(int(result.outcome()), "outcome");
        QTEST(result.status(), "status");
        // A late console has had its chance before the runs are counted.
        QTRY_VERIFY_WITH_TIMEOUT(!terminal.contains("touch late") || QFile::exists("late"), 20000);
        const auto runs = standins.runs();
        QVERIFY(!QFile::exists(scratch.filePath("INJECTED")));
        if (!named.isEmpty()) {
            QVERIFY(runs.isEmpty());
            // No scratch file of ours is left, whatever step failed.
            QCOMPARE(QDir(dir).entryList({".tamsel-*"}, QDir::Files | QDir::Hidden), QStringList());
            if (full) { // nothing left behind, the old file whole
                QFile old(dir + "/runtamsel.bat");
                QVERIFY(old.open(QIODevice::ReadOnly) && old.readAll() == "old\n");
                QCOMPARE(QDir(dir).entryList(QDir::Files | QDir::Hidden),
                         QStringList({"filler", "runtamsel.bat"}));
            }
            const QString box = answers.boxes().value(0);
            QVERIFY2(box.startsWith("Unable To Run: ") &&
                         box.endsWith("\nNothing was run. [OK] OK/OK") &&
                         box.contains(named.replace("%d", dir)),
                     qPrintable(box));
            QCOMPARE(answers.seen().constFirst().icon, int(QMessageBox::Warning));
            return;
        }
        if (terminal.contains("kill")) // the translator may or may not have run
            return;
        // Once, in our working directory, wherever the terminal starts.
        QCOMPARE(runs.size(), 1);
        QCOMPARE(runs[0].args + QStringList{runs[0].cwd}, (QStringList{input, scratch.path()}));
        // Title and command go in as the locale's 8-bit text, as they stand.
        const QString batch = "@echo off\necho Begin Prüfen ...\necho.\necho command : %1\necho.\n"
                              "%1\necho.\necho End Prüfen ...\necho.\npause\n";
        if (!terminal.contains("INJECTED"))
            QCOMPARE(scratch.read("runtamsel.bat"), batch.arg(command).toLocal8Bit());
        // A planted link is replaced (the batch read above), never written through.
        QVERIFY(where != "link" || scratch.read("victim") == "keep");
        struct stat st {
        };
        QVERIFY(where != "colleague" ||
                (::stat("runtamsel.bat", &st) == 0 && st.st_uid == 1234 && st.st_gid == 4321));
    }

    // While a run lasts the window is served (timers, paints, the window
    // manager's messages), but input given meanwhile is dropped, not replayed.
    void inputDuringRunDropped()
    {
        ScratchDir scratch;
        Standins standins(scratch.path());
        QPushButton button("Run");
        int runs = 0;
        connect(&button, &QPushButton::clicked,
                [&] { runs += runCommand("sh -c \"sleep 1; touch done\"", "t").wasRun(); });
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        bool served = false; // the run marks its end with a file
        QTimer::singleShot(200, [&] {
            served = !QFile::exists("done");
            const QPoint at = button.rect().center();
            for (auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
                QCoreApplication::postEvent(&button,
                                            new QMouseEvent(type, at, button.mapToGlobal(at),
                                                            Qt::LeftButton, Qt::LeftButton, {}));
        });
        // Posted now, they wait in the queue just as keys pressed during the run.
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease})
            QCoreApplication::postEvent(&button, new QKeyEvent(type, Qt::Key_Space, {}));
        button.click();
        QTest::qWait(50);
        QVERIFY(served);
        QCOMPARE(runs, 1);
        QTest::keyClick(&button, Qt::Key_Space); // a key after the run counts
        QCOMPARE(runs, 2);
    }

    // In a directory shared with others, a link another user planted is not
    // written through: run as an unprivileged user, who owns the target.
    void linkPlantedByAnotherUser()
    {
        if (::geteuid() != 0) { // the unprivileged side
            if (qEnvironmentVariableIsEmpty("TAMSEL_SHARED_DIR"))
                QSKIP("needs root to plant another user's link");
            QVERIFY(QDir::setCurrent(qEnvironmentVariable("TAMSEL_SHARED_DIR")));
            DialogAnswerer answers;
            answers.pressButton("OK");
            QCOMPARE(runCommand("true", "t").outcome(), RunResult::NotRun);
            VERIFY_DIALOGS(answers);
            QVERIFY(answers.boxes().value(0).contains("Operation not permitted"));
            return;
        }
        QTemporaryDir shared; // world-writable and sticky, as /tmp
        const QString victim = shared.filePath("victim");
        QVERIFY(::chmod(qPrintable(shared.path()), 01777) == 0);
        QVERIFY(QFile(victim).open(QIODevice::WriteOnly) &&
                QFile::link(victim, shared.filePath("runtamsel.bat")));
        QVERIFY(::chown(qPrintable(victim), 65534, 65534) == 0);
        QProcessEnvironment env;
        env.insert("TAMSEL_SHARED_DIR", shared.path());
        QByteArray output;
        QVERIFY2(OtherUser::run("linkPlantedByAnotherUser", env, output) == 0, output.constData());
        QVERIFY(QFileInfo(shared.filePath("runtamsel.bat")).isSymLink());
        QCOMPARE(QFileInfo(victim).size(), 0);
    }
};

QTEST_MAIN(TestRunCommand)
#include "test_runcommand.moc"
