#pragma once

#include <string>

namespace platform
{

// Runs a small batch file of the kind Tamsel writes, line by line:
// "@echo off", "echo.", "echo TEXT", "pause" and command lines. The result
// is the errorlevel after the last line: the status of the last command
// line (as runCommandLine gives it), 0 if there was none. A file that cannot
// be read gives a non-zero status.
int runBatchFile(const std::string& path);

// Prints the pause prompt and, when standard input is a terminal, waits for
// one key without Enter. Returns at once otherwise.
void pauseForKey();

} // namespace platform
