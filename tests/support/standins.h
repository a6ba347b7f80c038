#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The stand-in translators wired through the environment for one test: the
// two translator variables name them, the console runs inline, and every run
// is recorded in a log this object reads back.
class Standins
{
public:
    struct Run {
        QString program;
        QStringList args;
        bool optionsSet = false;
        QString options;
        QString cwd;
    };

    explicit Standins(const QString& logDir);
    ~Standins();

    static QString binDir();
    static QString examplesDir();
    static QString program(const QString& name);

    QList<Run> runs() const;

    // The exit status the stand-ins end with from now on.
    static void setStatus(int status);

private:
    QString log;
    QStringList saved;
};
