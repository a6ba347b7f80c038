// The program's own command line: --help and --version answered without a
// window or a display, and a style the user names winning over ours.
#include "standins.h"
#include "startoptions.h"

#include <QProcess>
#include <QTest>

class TestStartOptions : public QObject
{
    Q_OBJECT

private slots:
    void information_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("output"); // the start of the first line
        QTest::newRow("version") << QStringList{"--version"} << "tamsel 0.1";
        QTest::newRow("-v") << QStringList{"-v"} << "tamsel 0.1";
        QTest::newRow("help") << QStringList{"--help"} << "Usage: ";
        QTest::newRow("help after a Qt option")
            << QStringList{"-style", "fusion", "-h"} << "Usage: ";
        QTest::newRow("help with Qt's options") << QStringList{"--help-all"} << "Usage: ";
    }

    void information()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, output);
        QProcess program;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            env.remove(display); // a window would fail without them
        program.setProcessEnvironment(env);
        program.start(Standins::program("tamsel"), arguments);
        QVERIFY(program.waitForFinished(20000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        const QString printed = program.readAllStandardOutput();
        QVERIFY2(printed.startsWith(output), qPrintable(printed));
        if (output.startsWith("Usage"))
            QVERIFY(printed.contains("OKT_ZEB2MTX") && printed.contains("-style") &&
                    printed.contains("-platform") == arguments.contains("--help-all"));
    }

    void styleRequested_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("override"); // QT_STYLE_OVERRIDE
        QTest::addColumn<bool>("requested");
        QTest::newRow("none") << QStringList{} << QByteArray() << false;
        QTest::newRow("-style NAME") << QStringList{"-style", "fusion"} << QByteArray() << true;
        QTest::newRow("--style=NAME") << QStringList{"--style=fusion"} << QByteArray() << true;
        QTest::newRow("-style=NAME") << QStringList{"-style=fusion"} << QByteArray() << true;
        QTest::newRow("environment") << QStringList{} << QByteArray("fusion") << true;
        QTest::newRow("a file named so")
            << QStringList{"-stylesheet=x.qss"} << QByteArray() << false;
    }

    void styleRequested()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, override);
        const QByteArray saved = qgetenv("QT_STYLE_OVERRIDE");
        qputenv("QT_STYLE_OVERRIDE", override);
        QList<QByteArray> bytes{"tamsel"};
        for (const QString& a : arguments)
            bytes << a.toLocal8Bit();
        QList<char*> argv;
        for (QByteArray& b : bytes)
            argv << b.data();
        const bool requested = startoptions::styleRequested(int(argv.size()), argv.data());
        qputenv("QT_STYLE_OVERRIDE", saved);
        QTEST(requested, "requested");
    }
};

QTEST_GUILESS_MAIN(TestStartOptions)
#include "test_startoptions.moc"
