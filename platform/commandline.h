#pragma once

#include <string>
#include <vector>

namespace platform
{

// Splits a command line into arguments by the rules of the Microsoft C
// runtime, so that lines built as Windows command lines mean the same here.
std::vector<std::string> splitCommandLine(const std::string& line);

// Runs a command line without a shell: the program is started directly with
// the standard streams inherited, and the call waits for it. The result is a
// wait status: its low 16 bits are zero exactly when the program ran and
// exited with 0. A program that cannot be started gives 127 << 8. A batch
// file (.bat or .cmd) is run by runBatchFile instead.
int runCommandLine(const std::string& line);

// Exit code and signal of a status from runCommandLine or runBatchFile.
inline int statusExitCode(int status)
{
    return (status >> 8) & 0xff;
}
inline int statusSignal(int status)
{
    return status & 0x7f;
}
inline int exitStatus(int code)
{
    return (code & 0xff) << 8;
}

// Whether a program name names a batch file (.bat or .cmd, any case).
bool isBatchFileName(const std::string& program);

} // namespace platform
