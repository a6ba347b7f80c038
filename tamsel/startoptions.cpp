#include "startoptions.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <cstring>

#include <cerrno>
#include <unistd.h>
#include <vector>

#ifndef TAMSEL_VERSION
#define TAMSEL_VERSION "0"
#endif
#ifndef TAMSEL_TRY_RELATIVE
#define TAMSEL_TRY_RELATIVE "../libexec/tamsel/try-standins"
#endif

namespace startoptions
{

namespace
{

bool isOneOf(const char* argument, std::initializer_list<const char*> names)
{
    for (const char* name : names)
        if (std::strcmp(argument, name) == 0)
            return true;
    return false;
}

bool startsWith(const char* argument, const char* prefix)
{
    return std::strncmp(argument, prefix, std::strlen(prefix)) == 0;
}

const char* const description =
    "Front end for the ZEB2MTX and QRT2ZEB flexible body translators.\n"
    "\n"
    "The environment is its configuration:\n"
    "  OKT_ZEB2MTX      path of the ZEB2MTX translator (required)\n"
    "  OKT_QRT2ZEB      path of the QRT2ZEB translator (required)\n"
    "  QRT_ONDREL_NAME  the window title\n"
    "  TAMSEL_TERMINAL  the terminal a translator runs in, as a command prefix;\n"
    "                   \"none\": Tamsel's own standard streams\n"
    "Results, reports, runtamsel.bat and zebscript.dat land in the working\n"
    "directory. Qt's own options, such as -style NAME, are accepted too.\n"
    "\n"
    "  --try-standins   start on the stand-in translators in a copy of the samples";

} // namespace

namespace
{

void describe(QCommandLineParser& parser)
{
    QCoreApplication::setApplicationName("tamsel");
    QCoreApplication::setApplicationVersion(TAMSEL_VERSION);
    parser.setApplicationDescription(description);
    parser.addHelpOption();
    parser.addVersionOption();
}

// Qt's own options are told by the application object that reads them;
// offscreen it needs no display.
int printHelpAll(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCommandLineParser parser;
    describe(parser);
    parser.process(QStringList{QCoreApplication::arguments().value(0), "--help-all"});
    return 0; // process() has printed and ended the program
}

} // namespace

int answerInformation(int argc, char** argv)
{
    bool asked = false;
    for (int i = 1; i < argc && !asked; ++i)
        asked = isOneOf(argv[i], {"-h", "--help", "-?", "--help-all", "-v", "--version"});
    if (!asked)
        return -1;
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--help-all") == 0)
            return printHelpAll(argc, argv);
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    describe(parser);
    parser.parse(QCoreApplication::arguments()); // unknown options are Qt's
    const QString text = parser.isSet("version") && !parser.isSet("help")
                             ? QString("tamsel %1\n").arg(TAMSEL_VERSION)
                             : parser.helpText();
    std::fputs(text.toLocal8Bit().constData(), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}

int tryStandins(int argc, char** argv)
{
    if (argc < 2 || std::strcmp(argv[1], "--try-standins") != 0)
        return -1;
    QByteArray script;
    {
        QCoreApplication app(argc, argv);
        script = QFile::encodeName(
            QDir::cleanPath(QCoreApplication::applicationDirPath() + "/" TAMSEL_TRY_RELATIVE));
    }
    std::vector<char*> arguments{script.data()};
    arguments.insert(arguments.end(), argv + 2, argv + argc);
    arguments.push_back(nullptr);
    ::execv(script.constData(), arguments.data());
    std::fprintf(stderr, "tamsel: cannot start %s: %s\n", script.constData(), std::strerror(errno));
    return 127;
}

bool styleRequested(int argc, char** argv)
{
    if (!qEnvironmentVariableIsEmpty("QT_STYLE_OVERRIDE"))
        return true;
    for (int i = 1; i < argc; ++i)
        if (isOneOf(argv[i], {"-style", "--style"}) || startsWith(argv[i], "-style=") ||
            startsWith(argv[i], "--style="))
            return true;
    return false;
}

} // namespace startoptions
