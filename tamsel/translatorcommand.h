#pragma once

#include <QString>

// A translator's command line, built so that every file name reaches the
// translator as exactly one argument with exactly its bytes: the program as
// the environment names it (in quotes when it holds a blank), then file
// names in double quotes and options as they stand. What cannot be
// carried makes problem() say why instead.
class TranslatorCommand
{
public:
    // The translator named by an environment variable such as OKT_ZEB2MTX.
    explicit TranslatorCommand(const char* variable);

    // A file name, as one quoted argument after a blank.
    TranslatorCommand& file(const QString& name);
    // Options and lists, as they stand.
    TranslatorCommand& text(const QString& text);

    QString line() const { return command; }
    // Empty when the line carries everything whole; else what to tell the user.
    QString problem() const { return why; }
    // Warns "Unable To Run" with the problem; true when there was one.
    bool refused() const;

private:
    QString command;
    QString why;
};
