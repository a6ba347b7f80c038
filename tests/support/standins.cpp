#include "standins.h"

#include <QFile>

#include <cstdio>

namespace
{

const char* const variables[] = {"OKT_ZEB2MTX",
                                 "OKT_QRT2ZEB",
                                 "TAMSEL_TERMINAL",
                                 "TAMSEL_STANDIN_LOG",
                                 "TAMSEL_STANDIN_STATUS",
                                 "TAMSEL_STANDIN_FAIL_BLOCK",
                                 "OKT_ZEBWRITE_OPTIONS",
                                 "QRT_ONDREL_NAME",
                                 "DISPLAY",
                                 "WAYLAND_DISPLAY",
                                 "PATH",
                                 "TAMSEL_BIN_DIR"};

} // namespace

Standins::Standins(const QString& logDir) : log(logDir + "/standin.log")
{
    for (const char* v : variables)
        saved.append(qgetenv(v));
    // Scripts the tests hand to a terminal find the build tree here.
    qputenv("TAMSEL_BIN_DIR", binDir().toLocal8Bit());
    qputenv("OKT_ZEB2MTX", program("zeb2mtx-standin").toLocal8Bit());
    qputenv("OKT_QRT2ZEB", program("qrt2zeb-standin").toLocal8Bit());
    qputenv("TAMSEL_TERMINAL", "none");
    qputenv("TAMSEL_STANDIN_LOG", log.toLocal8Bit());
    qunsetenv("TAMSEL_STANDIN_STATUS");
    qunsetenv("TAMSEL_STANDIN_FAIL_BLOCK");
    qunsetenv("OKT_ZEBWRITE_OPTIONS");
    // The console runs inline here: its pause must never wait for a key,
    // not even when the tests are started from a terminal.
    std::freopen("/dev/null", "r", stdin);
}

Standins::~Standins()
{
    for (int i = 0; i < saved.size(); ++i)
        saved[i].isNull() ? qunsetenv(variables[i]) : qputenv(variables[i], saved[i]);
}

QList<Standins::Run> Standins::runs() const
{
    QList<Run> result;
    QFile f(log);
    if (!f.open(QIODevice::ReadOnly))
        return result;
    for (const QString& block :
         QString::fromLocal8Bit(f.readAll()).split("\n\n", Qt::SkipEmptyParts)) {
        Run run;
        for (const QString& line : block.split('\n')) {
            const QString key = line.section('\t', 0, 0);
            // The stand-ins escape backslash, tab and line feed.
            QStringList parts = line.section('\t', 1).split("\\\\");
            for (QString& part : parts)
                part.replace("\\t", "\t").replace("\\n", "\n");
            const QString value = parts.join('\\');
            if (key == "program")
                run.program = value;
            else if (key == "arg")
                run.args.append(value);
            else if (key == "options")
                run.optionsSet = true, run.options = value;
            else if (key == "cwd")
                run.cwd = value;
        }
        result.append(run);
    }
    return result;
}
