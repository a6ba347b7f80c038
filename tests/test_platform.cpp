// The platform layer: command-line splitting, running programs, the batch
// interpreter, the environment and the console hand-over.
#include "platform/batchfile.h"
#include "platform/commandline.h"
#include "platform/console.h"
#include "platform/environment.h"

#include "scratchdir.h"
#include "standins.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <csignal>

namespace
{

std::string local(const QString& s)
{
    return s.toLocal8Bit().toStdString();
}

QStringList toQt(const std::vector<std::string>& args)
{
    QStringList out;
    for (const auto& a : args)
        out.append(QString::fromStdString(a));
    return out;
}

bool writeScript(const QString& path, const QByteArray& body)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(body) != body.size())
        return false;
    f.close();
    return f.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                            QFile::ReadOther | QFile::ExeOther);
}

// Runs the console program on a batch file as a child and returns its output.
QByteArray consoleOutput(const QString& batch, int* exitCode = nullptr)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(Standins::program("tamsel-cmd"), {batch});
    p.closeWriteChannel();
    p.waitForFinished(30000);
    if (exitCode)
        *exitCode = p.exitCode();
    return p.readAll();
}

// Puts environment variables back as they were.
class EnvironmentGuard
{
public:
    explicit EnvironmentGuard(const QList<const char*>& names) : names(names)
    {
        for (const char* n : names)
            values.append(qgetenv(n));
    }
    ~EnvironmentGuard()
    {
        for (int i = 0; i < names.size(); ++i)
            values[i].isNull() ? qunsetenv(names[i]) : qputenv(names[i], values[i]);
    }

private:
    QList<const char*> names;
    QList<QByteArray> values;
};

} // namespace

class TestPlatform : public QObject
{
    Q_OBJECT

private slots:
    void splitCommandLine_data();
    void splitCommandLine();
    void runCommandLineStatus_data();
    void runCommandLineStatus();
    void commandLineReachesProgramWithoutShell();
    void batchInterpreter_data();
    void batchInterpreter();
    void batchErrorlevelIsLastCommand_data();
    void batchErrorlevelIsLastCommand();
    void putEnv_data();
    void putEnv();
    void putEnvReachesChild();
    void consoleTerminalChoice_data();
    void consoleTerminalChoice();
    void consoleTerminals_data();
    void consoleTerminals();
    void consoleProgramUsage();
};

void TestPlatform::splitCommandLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("args");

    // The table cases follow a program name, as in a real command line.
    QTest::newRow("quoted blanks") << R"(p "a b c" d e)" << QStringList{"p", "a b c", "d", "e"};
    QTest::newRow("escaped quote and backslash")
        << R"(p "ab\"c" "\\" d)" << QStringList{"p", "ab\"c", "\\", "d"};
    QTest::newRow("backslashes literal before non-quote")
        << R"(p a\\\b d"e f"g h)" << QStringList{"p", R"(a\\\b)", "de fg", "h"};
    QTest::newRow("odd backslashes before quote")
        << R"(p a\\\"b c d)" << QStringList{"p", R"(a\"b)", "c", "d"};
    QTest::newRow("even backslashes before quote")
        << R"(p a\\\\"b c" d e)" << QStringList{"p", R"(a\\b c)", "d", "e"};
    QTest::newRow("empty argument") << R"(p "" x)" << QStringList{"p", "", "x"};
    QTest::newRow("unterminated quote") << R"(p "unterm)" << QStringList{"p", "unterm"};

    QTest::newRow("empty line") << "" << QStringList{};
    QTest::newRow("tabs separate") << "p\ta\t\tb" << QStringList{"p", "a", "b"};
    QTest::newRow("leading and trailing blanks") << "  p a  " << QStringList{"p", "a"};
    QTest::newRow("doubled quote inside quotes")
        << R"(p "a""b" c)" << QStringList{"p", "a\"b", "c"};
    QTest::newRow("program in quotes with blank")
        << R"("/opt/my tools/zeb2mtx" "in put.zeb")"
        << QStringList{"/opt/my tools/zeb2mtx", "in put.zeb"};
    QTest::newRow("program keeps backslashes")
        << R"(C:\tools\zeb2mtx.exe x)" << QStringList{R"(C:\tools\zeb2mtx.exe)", "x"};
    QTest::newRow("program: quote after backslash toggles")
        << R"("C:\dir\"x y)" << QStringList{R"(C:\dir\x)", "y"};
    QTest::newRow("empty program") << R"("" x)" << QStringList{"", "x"};
    QTest::newRow("shell characters stay")
        << R"(p $(id);x.zeb `a` |b >c)" << QStringList{"p", "$(id);x.zeb", "`a`", "|b", ">c"};
    QTest::newRow("trailing backslash") << R"(p a\)" << QStringList{"p", R"(a\)"};
}

void TestPlatform::splitCommandLine()
{
    QFETCH(QString, line);
    QFETCH(QStringList, args);
    QCOMPARE(toQt(platform::splitCommandLine(line.toStdString())), args);
}

void TestPlatform::runCommandLineStatus_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<int>("signal");

    QTest::newRow("exit 0") << "sh -c \"exit 0\"" << 0 << 0;
    QTest::newRow("exit 3") << "sh -c \"exit 3\"" << 3 << 0;
    QTest::newRow("killed by a signal") << "sh -c \"kill -KILL $$\"" << 0 << int(SIGKILL);
    QTest::newRow("program missing") << "/no/such/program x" << 127 << 0;
    QTest::newRow("empty line") << "" << 127 << 0;
}

void TestPlatform::runCommandLineStatus()
{
    QFETCH(QString, line);
    QFETCH(int, exitCode);
    QFETCH(int, signal);
    const int status = platform::runCommandLine(local(line));
    QCOMPARE(platform::statusExitCode(status), exitCode);
    QCOMPARE(platform::statusSignal(status), signal);
    QCOMPARE((status & 0xffff) == 0, exitCode == 0 && signal == 0);
}

void TestPlatform::commandLineReachesProgramWithoutShell()
{
    ScratchDir dir;
    Standins standins(dir.path());
    const QString line = '"' + Standins::program("zeb2mtx-standin") +
                         R"(" "$(id);x.zeb" "Übung Träger 'q'.mtx" 3:10 |x `id`)";
    QCOMPARE(platform::runCommandLine(local(line)), 0);
    const auto runs = standins.runs();
    QCOMPARE(runs.size(), 1);
    QCOMPARE(runs[0].args,
             (QStringList{"$(id);x.zeb", "Übung Träger 'q'.mtx", "3:10", "|x", "`id`"}));
    QCOMPARE(runs[0].cwd, dir.path());
}

void TestPlatform::batchInterpreter_data()
{
    QTest::addColumn<QByteArray>("batch");
    QTest::addColumn<QByteArray>("output");

    QTest::newRow("echo lines as they stand")
        << QByteArray("@echo off\necho Begin Translating ...\necho.\necho a \"b c\" %PATH% $HOME\n")
        << QByteArray("Begin Translating ...\n\na \"b c\" %PATH% $HOME\n");
    QTest::newRow("carriage returns are line ends")
        << QByteArray("@echo off\r\necho one\r\necho.\r\n") << QByteArray("one\n\n");
    QTest::newRow("pause without a terminal returns at once")
        << QByteArray("@echo off\npause\necho after\n")
        << QByteArray("Press any key to continue . . . \nafter\n");
    QTest::newRow("keywords in any case")
        << QByteArray("@ECHO OFF\nECHO Loud\nEcho.\n") << QByteArray("Loud\n\n");
    QTest::newRow("command output between echoes")
        << QByteArray("@echo off\necho before\nsh -c \"echo inside\"\necho after\n")
        << QByteArray("before\ninside\nafter\n");
    QTest::newRow("last line without line feed")
        << QByteArray("@echo off\necho tail") << QByteArray("tail\n");
    QTest::newRow("empty lines ignored")
        << QByteArray("\n\n@echo off\n\necho x\n") << QByteArray("x\n");
}

void TestPlatform::batchInterpreter()
{
    QFETCH(QByteArray, batch);
    QFETCH(QByteArray, output);
    ScratchDir dir;
    QVERIFY(dir.write("t.bat", batch));
    QCOMPARE(consoleOutput(dir.filePath("t.bat")), output);
}

void TestPlatform::batchErrorlevelIsLastCommand_data()
{
    QTest::addColumn<QByteArray>("batch");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("no command") << QByteArray("@echo off\necho x\npause\n") << 0;
    QTest::newRow("failure survives pause")
        << QByteArray("@echo off\nsh -c \"exit 3\"\necho.\npause\n") << 3;
    QTest::newRow("later success wins")
        << QByteArray("@echo off\nsh -c \"exit 3\"\nsh -c \"exit 0\"\n") << 0;
    QTest::newRow("missing program") << QByteArray("/no/such/tool\npause\n") << 127;
}

void TestPlatform::batchErrorlevelIsLastCommand()
{
    QFETCH(QByteArray, batch);
    QFETCH(int, exitCode);
    ScratchDir dir;
    QVERIFY(dir.write("t.bat", batch));
    const int status = platform::runBatchFile(local(dir.filePath("t.bat")));
    QCOMPARE(platform::statusExitCode(status), exitCode);
    // A batch file named as a command runs through the interpreter too.
    QCOMPARE(platform::statusExitCode(platform::runCommandLine(local(dir.filePath("t.bat")))),
             exitCode);
}

void TestPlatform::putEnv_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<bool>("isSet");
    QTest::addColumn<QString>("value");

    QTest::newRow("plain") << "TAMSEL_T=abc" << true << true << "abc";
    QTest::newRow("leading blank kept") << "TAMSEL_T= 1 2  3 " << true << true << " 1 2  3 ";
    QTest::newRow("second equals sign kept") << "TAMSEL_T=a=b" << true << true << "a=b";
    QTest::newRow("empty value removes") << "TAMSEL_T=" << true << false << "";
    QTest::newRow("no equals sign") << "TAMSEL_T" << false << true << "before";
    QTest::newRow("empty name") << "=x" << false << true << "before";
}

void TestPlatform::putEnv()
{
    QFETCH(QString, entry);
    QFETCH(bool, ok);
    QFETCH(bool, isSet);
    QFETCH(QString, value);
    qputenv("TAMSEL_T", "before");
    QCOMPARE(platform::putEnv(local(entry)), ok);
    QCOMPARE(qEnvironmentVariableIsSet("TAMSEL_T"), isSet);
    if (isSet)
        QCOMPARE(qEnvironmentVariable("TAMSEL_T"), value);
    qunsetenv("TAMSEL_T");
}

void TestPlatform::putEnvReachesChild()
{
    ScratchDir dir;
    Standins standins(dir.path());
    const QString options = " 1 d   0 f    0 0 r";
    QVERIFY(dir.write("x", "QRT\n") && dir.write("y", "QRT\n"));
    QVERIFY(platform::putEnv(local("OKT_ZEBWRITE_OPTIONS=" + options)));
    QCOMPARE(platform::runCommandLine(local(Standins::program("qrt2zeb-standin") + " x")), 0);
    QVERIFY(platform::putEnv("OKT_ZEBWRITE_OPTIONS="));
    QCOMPARE(platform::runCommandLine(local(Standins::program("qrt2zeb-standin") + " y")), 0);
    const auto runs = standins.runs();
    QCOMPARE(runs.size(), 2);
    QVERIFY(runs[0].optionsSet);
    QCOMPARE(runs[0].options, options);
    QVERIFY(!runs[1].optionsSet);
}

void TestPlatform::consoleTerminalChoice_data()
{
    QTest::addColumn<QByteArray>("terminal"); // TAMSEL_TERMINAL; null: unset
    QTest::addColumn<QByteArray>("display");  // "x11", "wayland" or none
    QTest::addColumn<QStringList>("onPath");  // terminals installed
    QTest::addColumn<QStringList>("prefix");

    const QStringList both{"x-terminal-emulator", "xterm"};
    QTest::newRow("none means no window")
        << QByteArray("none") << QByteArray("x11") << both << QStringList{};
    QTest::newRow("chosen prefix, split, needs no display")
        << QByteArray("\"/opt/my term\" --wait --") << QByteArray() << both
        << QStringList{"/opt/my term", "--wait", "--"};
    QTest::newRow("system terminal first")
        << QByteArray() << QByteArray("x11") << both << QStringList{"x-terminal-emulator", "-e"};
    QTest::newRow("xterm next, wayland display")
        << QByteArray() << QByteArray("wayland") << QStringList{"xterm"}
        << QStringList{"xterm", "-e"};
    QTest::newRow("no terminal installed")
        << QByteArray() << QByteArray("x11") << QStringList{} << QStringList{};
    QTest::newRow("no display, no window") << QByteArray() << QByteArray() << both << QStringList{};
}

void TestPlatform::consoleTerminalChoice()
{
    QFETCH(QByteArray, terminal);
    QFETCH(QByteArray, display);
    QFETCH(QStringList, onPath);
    QFETCH(QStringList, prefix);
    ScratchDir dir;
    for (const QString& program : onPath)
        QVERIFY(writeScript(dir.filePath(program), "#!/bin/sh\n"));
    EnvironmentGuard guard({"TAMSEL_TERMINAL", "DISPLAY", "WAYLAND_DISPLAY", "PATH"});
    terminal.isNull() ? qunsetenv("TAMSEL_TERMINAL") : qputenv("TAMSEL_TERMINAL", terminal);
    display == "x11" ? qputenv("DISPLAY", ":0") : qunsetenv("DISPLAY");
    display == "wayland" ? qputenv("WAYLAND_DISPLAY", "wayland-0") : qunsetenv("WAYLAND_DISPLAY");
    qputenv("PATH", dir.path().toLocal8Bit());
    QCOMPARE(toQt(platform::terminalPrefix()), prefix);
}

void TestPlatform::consoleTerminals_data()
{
    QTest::addColumn<QByteArray>("terminal"); // a fake terminal, or "none"
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<bool>("inTerminal");
    QTest::addColumn<int>("settleMs"); // how long a late console may take

    QTest::newRow("no window: inline") << QByteArray("none") << 4 << false << 0;
    // Returns 0 at once while the console program goes on in the background.
    QTest::newRow("returns before the console ends")
        << QByteArray("#!/bin/sh\n\"$@\" >/dev/null &\nexit 0\n") << 4 << true << 0;
    QTest::newRow("waits for the console, returns 0")
        << QByteArray("#!/bin/sh\n\"$@\" >/dev/null\nexit 0\n") << 4 << true << 0;
    QTest::newRow("fails without starting the console")
        << QByteArray("#!/bin/sh\nexit 1\n") << 4 << false << 0;
    // Given up on, the late console must not run the batch a second time.
    QTest::newRow("starts the console too late")
        << QByteArray("#!/bin/sh\n(sleep 4; \"$@\") >/dev/null 2>&1 &\nexit 0\n") << 4 << false
        << 5500;
    QTest::newRow("console killed before it could tell")
        << QByteArray("#!/bin/sh\nsetsid \"$@\" >/dev/null &\n"
                      "while [ ! -e \"$5.started\" ]; do sleep 0.05; done\n"
                      "kill -KILL -$!\nexit 0\n")
        << 1 << true << 0;
}

void TestPlatform::consoleTerminals()
{
    QFETCH(QByteArray, terminal);
    QFETCH(int, exitCode);
    QFETCH(bool, inTerminal);
    QFETCH(int, settleMs);
    ScratchDir dir;
    QVERIFY(writeScript(dir.filePath("fake-term"), terminal));
    // The marker tells where and how often the batch ran: the console
    // program runs it in the caller's directory, wherever it starts.
    QVERIFY(dir.write("t.bat", "@echo off\nsh -c \"sleep 1; echo $PPID >> ran-by\"\n"
                               "sh -c \"exit 4\"\npause\n"));
    EnvironmentGuard guard({"TAMSEL_TERMINAL"});
    qputenv("TAMSEL_TERMINAL",
            terminal == "none" ? terminal : dir.filePath("fake-term").toLocal8Bit());
    QElapsedTimer clock;
    clock.start();
    const int status = platform::runInConsole(local(dir.filePath("t.bat")),
                                              local(Standins::program("tamsel-cmd")));
    QCOMPARE(platform::statusExitCode(status), exitCode);
    if (exitCode != 4)
        return;
    QTest::qWait(std::max<int>(0, settleMs - clock.elapsed()));
    const QList<QByteArray> runs = dir.read("ran-by").trimmed().split('\n');
    QCOMPARE(runs.size(), 1);
    QCOMPARE(runs[0].toLongLong() != QCoreApplication::applicationPid(), inTerminal);
}

void TestPlatform::consoleProgramUsage()
{
    QProcess p;
    p.start(Standins::program("tamsel-cmd"), {"--bogus", "x", "t.bat"});
    QVERIFY(p.waitForFinished(30000));
    QCOMPARE(p.exitCode(), 2);
    p.start(Standins::program("tamsel-cmd"), {"/no/such.bat"});
    QVERIFY(p.waitForFinished(30000));
    QCOMPARE(p.exitCode(), 1);
    QVERIFY(p.readAllStandardError().contains("cannot read /no/such.bat"));
}

QTEST_GUILESS_MAIN(TestPlatform)
#include "test_platform.moc"
