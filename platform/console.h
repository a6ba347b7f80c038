#pragma once

#include <string>
#include <vector>

namespace platform
{

// Runs batch text where the user can watch it, as a console window does:
// in a terminal window that runs the console program
//   CONSOLE --directory CWD --status-file FILE BATCHFILE
// or, when there is no window to be had, inline with this process's own
// standard streams. Blocks until the status is known and returns it (the
// form of runCommandLine).
//
// What runs is a private copy of the text, in a directory only this user
// can enter, so that nobody can swap the batch between its writing and its
// running, and two programs in one directory never run each other's.
//
// The terminal is the command prefix in TAMSEL_TERMINAL ("none": no
// window); without it, "x-terminal-emulator -e" or "xterm -e", whichever
// exists, but only when there is a display; these two are given the title.
int runInConsole(const std::string& batchText, const std::string& consoleProgram,
                 const std::string& title = "Tamsel");

// The terminal prefix runInConsole would use now; empty for inline.
std::vector<std::string> terminalPrefix();

// The console program's side of the hand-over. announceConsoleStart creates
// FILE.started with this process id and holds a lock on it until the process
// ends, so that the waiting side can tell a live console from a dead one.
// writeConsoleStatus writes the status through a temporary file and a
// rename; the console writes it before the final pause too, so that a
// window closed at the pause still tells what the translator did. Both
// return false when the file cannot be written.
bool announceConsoleStart(const std::string& statusFile);
bool writeConsoleStatus(const std::string& statusFile, int status);

} // namespace platform
