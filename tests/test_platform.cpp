// The platform layer: command-line splitting, running programs, the batch
// interpreter, the environment and the choice of terminal. The console
// hand-over is tested through the command runner.
#include "platform/commandline.h"
#include "platform/console.h"
#include "platform/environment.h"
#include "platform/largebuffer.h"

#include "scratchdir.h"
#include "standins.h"

#include <QProcess>
#include <QTest>

#include <csignal>

static QStringList toQt(const std::vector<std::string>& args)
{
    QStringList out;
    for (const auto& a : args)
        out.append(QString::fromStdString(a));
    return out;
}

class TestPlatform : public QObject
{
    Q_OBJECT

private slots:
    void splitCommandLine_data(); // outside: raw strings in a class body trip moc

    void splitCommandLine()
    {
        QFETCH(QString, line);
        QTEST(toQt(platform::splitCommandLine(line.toStdString())), "args");
    }

    void quoteArgument_data();

    // Whatever it holds, a name comes back as one argument with its bytes.
    void quoteArgument()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, quoted);
        std::string out = "untouched";
        QCOMPARE(platform::quoteArgument(name.toStdString(), out), !quoted.isNull());
        QCOMPARE(QByteArray::fromStdString(out), quoted.isNull() ? "untouched" : quoted);
        const std::vector<std::string> args{"p", name.toStdString(), "next"};
        QVERIFY(quoted.isNull() || platform::splitCommandLine("p " + out + " \"next\"") == args);
    }

    void batchFile_data()
    {
        QTest::addColumn<QString>("batch"); // null: no such file
        QTest::addColumn<QString>("output");
        QTest::addColumn<int>("exitCode"); // negative: killed by that signal
        const QString press = "Press any key to continue . . . \n";
        // clang-format off
        QTest::newRow("echo as it stands; pause returns at once")
            << "@echo off\necho Begin ...\necho.\necho a \"b c\" %PATH% $HOME\npause\necho after\n"
            << "Begin ...\n\na \"b c\" %PATH% $HOME\n" + press + "after\n" << 0;
        QTest::newRow("any case, CR LF")         << "@ECHO OFF\r\nECHO Loud\r\nEcho.\r\n" << "Loud\n\n"  << 0;
        QTest::newRow("blank lines, no last LF") << "\n\n@echo off\n\necho x\necho tail"  << "x\ntail\n" << 0;
        QTest::newRow("output in order; exit 0 after exit 3")
            << "@echo off\necho before\nsh -c \"exit 3\"\nsh -c \"echo inside\"\necho after\n" << "before\ninside\nafter\n" << 0;
        QTest::newRow("exit 3 survives pause")   << "sh -c \"exit 3\"\npause\n"         << press << 3;
        QTest::newRow("killed by a signal")      << "sh -c \"kill -KILL $$\"\n"         << ""    << -SIGKILL;
        QTest::newRow("program missing")         << "/no/such/program x\n"              << ""    << 127;
        QTest::newRow("no batch file")           << QString()                           << ""    << 1;
        QTest::newRow("no descriptor of it in a child") << "sh -c \"ls -l /proc/$$/fd | grep Bat; true\"\n" << "" << 0;
        QTest::newRow("calls itself: stopped")   << "@echo off\n./T.Bat\n" << "Batch files nested more than 16 deep: stopped.\n" << 1;
        // A program is run as a program, whatever its name.
        QTest::newRow("a program named .Bat")    << "#!/bin/sh\necho script\nexit 5\n" << "script\n" << 5;
        // clang-format on
    }

    void batchFile()
    {
        QFETCH(QString, batch);
        QFETCH(QString, output);
        QFETCH(int, exitCode);
        ScratchDir dir;
        Standins standins(dir.path());
        const QString path = dir.filePath("T.Bat");
        const bool program = batch.startsWith("#!"); // the console is only given batch files
        QVERIFY(batch.isNull() || dir.write("T.Bat", batch.toUtf8(), program));
        QProcess console;
        console.start(Standins::program("tamsel-cmd"), {path});
        QVERIFY(console.waitForFinished(30000));
        QVERIFY(program || console.readAllStandardOutput() == output.toUtf8());
        QVERIFY(program || console.exitCode() == (exitCode < 0 ? 128 - exitCode : exitCode));
        if (batch.isNull())
            return;
        // Any case of the extension makes a command line run the interpreter.
        const int status = platform::runCommandLine(path.toStdString());
        QCOMPARE(platform::statusExitCode(status), qMax(exitCode, 0));
        QCOMPARE(platform::statusSignal(status), qMax(-exitCode, 0));
        QCOMPARE((status & 0xffff) == 0, exitCode == 0);
    }

    // An empty value removes the variable, as _putenv does.
    void childSeesTheEnvironment()
    {
        ScratchDir dir;
        Standins standins(dir.path());
        const QString options = " 1 d=0   f 0 r";
        const std::string qrt2zeb = (Standins::program("qrt2zeb-standin") + " x").toStdString();
        QVERIFY(dir.write("x", "QRT\n"));
        QVERIFY(platform::putEnv(("OKT_ZEBWRITE_OPTIONS=" + options).toStdString()));
        QVERIFY(!platform::putEnv("OKT_ZEBWRITE_OPTIONS") && !platform::putEnv("=x"));
        QCOMPARE(platform::runCommandLine(qrt2zeb), 0);
        QVERIFY(platform::putEnv("OKT_ZEBWRITE_OPTIONS="));
        QCOMPARE(platform::runCommandLine(qrt2zeb), 0);
        // The longest entry still reaches a child; one byte more is refused.
        std::string longest = "OKT_ZEBWRITE_OPTIONS=";
        longest.resize(platform::environmentEntryLimit("OKT_ZEBWRITE_OPTIONS"), 'x');
        QVERIFY(!platform::putEnv(longest + "x") && platform::putEnv(longest));
        QCOMPARE(platform::runCommandLine(qrt2zeb), 0);
        const auto runs = standins.runs();
        QCOMPARE(runs.size(), 3);
        QCOMPARE(runs[2].options.size(), longest.size() - 21);
        QCOMPARE(runs[0].options, options);
        QVERIFY(runs[0].optionsSet && !runs[1].optionsSet);
    }

    // A store grown in steps past its room keeps every byte where it was; a
    // moved one hands them over.
    void largeBufferGrows()
    {
        platform::LargeBuffer grown;
        grown.reserve(100);
        std::string expected;
        for (int step = 0; expected.size() < (size_t(6) << 20); ++step) {
            const std::string part(size_t(step) * 7919 % 65536, char('a' + step % 26));
            grown.append(part.data(), part.size());
            expected += part;
        }
        platform::LargeBuffer moved(std::move(grown));
        QCOMPARE(moved.size(), expected.size());
        QVERIFY(std::string(moved.data(), moved.size()) == expected);
        QVERIFY(moved.footprint() >= moved.size() && moved.footprint() < moved.size() + 65536);
        QVERIFY(grown.size() == 0 && grown.data() == nullptr);
    }

    void terminalChoice_data()
    {
        QTest::addColumn<QString>("terminal");   // TAMSEL_TERMINAL; null: unset
        QTest::addColumn<QString>("display");    // "x11", "wayland" or none
        QTest::addColumn<QStringList>("onPath"); // terminals installed
        QTest::addColumn<QStringList>("prefix");

        const QStringList both{"x-terminal-emulator", "xterm"}, none, xterm{"xterm"};
        const QString unset;
        // clang-format off
        QTest::newRow("none means no window")  << "none" << "x11"     << both  << none;
        QTest::newRow("chosen, needs no display") << "\"/opt/my term\" --wait --" << "" << both << QStringList{"/opt/my term", "--wait", "--"};
        QTest::newRow("system terminal first") << unset  << "x11"     << both  << QStringList{"x-terminal-emulator", "-e"};
        QTest::newRow("xterm next, wayland")   << unset  << "wayland" << xterm << QStringList{"xterm", "-e"};
        QTest::newRow("no terminal installed") << unset  << "x11"     << none  << none;
        QTest::newRow("no display, no window") << unset  << ""        << both  << none;
        // clang-format on
    }

    void terminalChoice()
    {
        QFETCH(QString, terminal);
        QFETCH(QString, display);
        QFETCH(QStringList, onPath);
        ScratchDir dir;
        Standins standins(dir.path()); // puts the variables back
        for (const QString& program : onPath)
            QVERIFY(dir.write(program, "#!/bin/sh\n", true));
        terminal.isNull() ? qunsetenv("TAMSEL_TERMINAL")
                          : qputenv("TAMSEL_TERMINAL", terminal.toUtf8());
        display == "x11" ? qputenv("DISPLAY", ":0") : qunsetenv("DISPLAY");
        display == "wayland" ? qputenv("WAYLAND_DISPLAY", "wayland-0")
                             : qunsetenv("WAYLAND_DISPLAY");
        qputenv("PATH", dir.path().toLocal8Bit());
        QTEST(toQt(platform::terminalPrefix()), "prefix");
    }
};

void TestPlatform::splitCommandLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("args");
    // clang-format off
    QTest::newRow("quoted blanks")           << R"(p "a b c" d e)"     << QStringList{"p", "a b c", "d", "e"};
    QTest::newRow("escaped quote, 2n \\")    << R"(p "ab\"c" "\\" d)"  << QStringList{"p", "ab\"c", "\\", "d"};
    QTest::newRow("\\ before non-quote")     << R"(p a\\\b d"e f"g h)" << QStringList{"p", R"(a\\\b)", "de fg", "h"};
    QTest::newRow("2n+1 \\ before quote")    << R"(p a\\\"b c d)"      << QStringList{"p", R"(a\"b)", "c", "d"};
    QTest::newRow("2n \\ before quote")      << R"(p a\\\\"b c" d e)"  << QStringList{"p", R"(a\\b c)", "d", "e"};
    QTest::newRow("empty argument")          << R"(p "" x)"            << QStringList{"p", "", "x"};
    QTest::newRow("unterminated quote")      << R"(p "unterm)"         << QStringList{"p", "unterm"};
    QTest::newRow("doubled quote in quotes") << R"(p "a""b" c)"        << QStringList{"p", "a\"b", "c"};
    QTest::newRow("tabs and outer blanks")   << "\t p\ta\t\tb "        << QStringList{"p", "a", "b"};
    QTest::newRow("only blanks")             << " \t "                 << QStringList{};
    QTest::newRow("program: \\ kept")        << R"("C:\my dir\"x y)"   << QStringList{R"(C:\my dir\x)", "y"};
    QTest::newRow("empty program")           << R"("" x)"              << QStringList{"", "x"};
    // clang-format on
}

void TestPlatform::quoteArgument_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("quoted"); // null: refused
    const QByteArray refused;
    // clang-format off
    QTest::newRow("ordinary name: just quotes") << QByteArray("Träger 1.zeb")      << QByteArray(R"("Träger 1.zeb")");
    QTest::newRow("a quote adds no argument")   << QByteArray(R"(in.zeb" -o v -t)") << QByteArray(R"("in.zeb\" -o v -t")");
    QTest::newRow("trailing backslash")         << QByteArray(R"(a\)")              << QByteArray(R"("a\\")");
    QTest::newRow("two trailing backslashes")   << QByteArray(R"(a\\)")             << QByteArray(R"("a\\\\")");
    QTest::newRow("backslash before a quote")   << QByteArray(R"(a\"b)")            << QByteArray(R"("a\\\"b")");
    QTest::newRow("inner backslashes stay")     << QByteArray(R"(C:\d\x $y)")       << QByteArray(R"("C:\d\x $y")");
    QTest::newRow("empty name")                 << QByteArray("")                   << QByteArray(R"("")");
    QTest::newRow("line feed refused")          << QByteArray("a\nb")               << refused;
    QTest::newRow("carriage return refused")    << QByteArray("a\rb")               << refused;
    QTest::newRow("NUL refused")                << QByteArray("a\0b", 3)            << refused;
    // clang-format on
}

QTEST_GUILESS_MAIN(TestPlatform)
#include "test_platform.moc"
