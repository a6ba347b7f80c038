#pragma once

#include <string>
#include <vector>

namespace platform
{

// Runs a batch file where the user can watch it, as a console window does:
// in a terminal window that runs the console program
//   CONSOLE --directory CWD --status-file FILE BATCHFILE
// or, when there is no window to be had, inline with this process's own
// standard streams. Blocks until the status is known and returns it (the
// form of runCommandLine).
//
// The terminal is the command prefix in TAMSEL_TERMINAL ("none": no
// window); without it, "x-terminal-emulator -e" or "xterm -e", whichever
// exists, but only when there is a display.
int runInConsole(const std::string& batchFile, const std::string& consoleProgram);

// The terminal prefix runInConsole would use now; empty for inline.
std::vector<std::string> terminalPrefix();

// The console program's side of the hand-over. announceConsoleStart creates
// FILE.started with this process id and holds a lock on it until the process
// ends, so that the waiting side can tell a live console from a dead one.
// writeConsoleStatus writes the status through a temporary file and a
// rename. Both return false when the file cannot be written.
bool announceConsoleStart(const std::string& statusFile);
bool writeConsoleStatus(const std::string& statusFile, int status);

} // namespace platform
