#include "standins.h"

#include <QFile>
#include <QProcessEnvironment>

#include <cstdio>
#include <cstdlib>

namespace
{

const char* const variables[] = {"OKT_ZEB2MTX",           "OKT_QRT2ZEB",
                                 "TAMSEL_TERMINAL",       "TAMSEL_STANDIN_LOG",
                                 "TAMSEL_STANDIN_STATUS", "OKT_ZEBWRITE_OPTIONS"};

QString unescaped(const QString& value)
{
    QString out;
    for (int i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            const QChar next = value[++i];
            out += next == 't' ? QChar('\t') : next == 'n' ? QChar('\n') : next;
        } else {
            out += value[i];
        }
    }
    return out;
}

} // namespace

Standins::Standins(const QString& logDir) : log(logDir + "/standin.log")
{
    for (const char* v : variables)
        saved.append(qEnvironmentVariableIsSet(v) ? qEnvironmentVariable(v) : QString());
    qputenv("OKT_ZEB2MTX", program("zeb2mtx-standin").toLocal8Bit());
    qputenv("OKT_QRT2ZEB", program("qrt2zeb-standin").toLocal8Bit());
    qputenv("TAMSEL_TERMINAL", "none");
    qputenv("TAMSEL_STANDIN_LOG", log.toLocal8Bit());
    qunsetenv("TAMSEL_STANDIN_STATUS");
    qunsetenv("OKT_ZEBWRITE_OPTIONS");
    // The console runs inline here: its pause must never wait for a key,
    // not even when the tests are started from a terminal.
    std::freopen("/dev/null", "r", stdin);
}

Standins::~Standins()
{
    int i = 0;
    for (const char* v : variables) {
        const QString value = saved.value(i++);
        if (value.isNull())
            qunsetenv(v);
        else
            qputenv(v, value.toLocal8Bit());
    }
}

QString Standins::binDir()
{
    return qEnvironmentVariable("TAMSEL_BIN_DIR");
}

QString Standins::examplesDir()
{
    return qEnvironmentVariable("TAMSEL_EXAMPLES_DIR");
}

QString Standins::program(const QString& name)
{
    return binDir() + "/" + name;
}

void Standins::setStatus(int status)
{
    qputenv("TAMSEL_STANDIN_STATUS", QByteArray::number(status));
}

QList<Standins::Run> Standins::runs() const
{
    QList<Run> result;
    QFile f(log);
    if (!f.open(QIODevice::ReadOnly))
        return result;
    Run run;
    for (const QByteArray& raw : f.readAll().split('\n')) {
        const QString line = QString::fromLocal8Bit(raw);
        if (line.isEmpty()) {
            if (!run.program.isEmpty())
                result.append(run);
            run = Run();
            continue;
        }
        const QString key = line.section('\t', 0, 0);
        const QString value = unescaped(line.section('\t', 1));
        if (key == "program")
            run.program = value;
        else if (key == "arg")
            run.args.append(value);
        else if (key == "options")
            run.optionsSet = true, run.options = value;
        else if (key == "cwd")
            run.cwd = value;
    }
    return result;
}
