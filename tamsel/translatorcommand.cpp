#include "translatorcommand.h"

#include "messagebox.h"
#include "platform/commandline.h"

#include <cstdlib>

TranslatorCommand::TranslatorCommand(const char* variable)
{
    const QString program = QString::fromLocal8Bit(std::getenv(variable));
    std::string quoted;
    if (platform::quoteProgram(program.toLocal8Bit().toStdString(), quoted)) {
        command = QString::fromLocal8Bit(quoted.c_str());
        return;
    }
    command = program;
    why = QString("The translator %1 (%2) cannot be started: a command line cannot carry a "
                  "path with a quote, a line break or a NUL character.\n"
                  "Set %2 to a path without them, for instance a link to the translator.")
              .arg(program, variable);
}

TranslatorCommand& TranslatorCommand::file(const QString& name)
{
    std::string quoted;
    if (platform::quoteArgument(name.toLocal8Bit().toStdString(), quoted)) {
        command += ' ' + QString::fromLocal8Bit(quoted.c_str());
    } else if (why.isEmpty()) {
        QString shown = name;
        shown.replace('\n', "\\n").replace('\r', "\\r").replace(QChar(0), "\\0");
        why = QString("The file name \"%1\" contains a line break or a NUL character, "
                      "which a command line cannot carry.")
                  .arg(shown);
    }
    return *this;
}

TranslatorCommand& TranslatorCommand::text(const QString& text)
{
    command += text;
    return *this;
}

bool TranslatorCommand::refused() const
{
    if (why.isEmpty())
        return false;
    MessageBox::warn("Unable To Run", why + "\nNothing was run.");
    return true;
}
