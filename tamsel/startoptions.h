#pragma once

// What the command line asks of the program before any window is made.
namespace startoptions
{

// --help and --version are answered on standard output, with no display
// needed: the exit status then, or -1 when the program is to start.
int answerInformation(int argc, char** argv);

// --try-standins (the desktop entry's action) hands over to the installed
// try-standins beside the program, with the arguments that follow: the exit
// status when that fails, or -1 when it was not asked for.
int tryStandins(int argc, char** argv);

// Whether the user named a style (-style NAME, QT_STYLE_OVERRIDE), which
// then wins over the program's own.
bool styleRequested(int argc, char** argv);

} // namespace startoptions
