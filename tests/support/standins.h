#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The stand-in translators wired through the environment for one test: the
// two translator variables name them, the console runs inline, and every run
// is recorded in a log this object reads back. The variables a test may
// change are put back afterwards.
class Standins
{
public:
    struct Run {
        QString program, options, cwd;
        QStringList args;
        bool optionsSet = false;
    };

    explicit Standins(const QString& logDir);
    ~Standins();

    // The build tree's folders unless the environment names others, so that
    // a test binary also runs on its own, outside CTest.
    static QString binDir()
    {
        return qEnvironmentVariable("TAMSEL_BIN_DIR", TAMSEL_DEFAULT_BIN_DIR);
    }
    static QString examplesDir()
    {
        return qEnvironmentVariable("TAMSEL_EXAMPLES_DIR", TAMSEL_DEFAULT_EXAMPLES_DIR);
    }
    static QString program(const QString& name) { return binDir() + "/" + name; }
    // The exit status the stand-ins end with from now on.
    static void setStatus(int s) { qputenv("TAMSEL_STANDIN_STATUS", QByteArray::number(s)); }

    QList<Run> runs() const;

private:
    QString log;
    QList<QByteArray> saved;
};
