#pragma once

#include <string>
#include <vector>

namespace platform
{

// Splits a command line into arguments by the rules of the Microsoft C
// runtime, so that lines built as Windows command lines mean the same here.
std::vector<std::string> splitCommandLine(const std::string& line);

// Encodes one argument for a command line so that splitCommandLine gives
// back exactly its bytes as one argument: in double quotes, with the
// backslashes before a quote (and before the closing one) doubled and inner
// quotes escaped. An ordinary name just gets its quotes. False, with nothing
// written, when no line can carry it (a NUL, a carriage return, a line feed).
bool quoteArgument(const std::string& arg, std::string& quoted);

// Encodes a program name for the head of a command line: as it stands, or
// in double quotes when it holds a blank or a tab ("C:\Program Files\x").
// The head takes backslashes literally and no quote inside, so False, with
// nothing written, for an empty name and one with a quote, a carriage
// return, a line feed or a NUL.
bool quoteProgram(const std::string& program, std::string& quoted);

// The file that runCommandLine starts for a program name: a name with a
// slash as it stands (relative to the working directory), any other the
// first executable regular file of that name in a PATH directory. Empty
// when there is none. The start check and the run both use this.
std::string findProgram(const std::string& name);

// Runs a command line without a shell: the program, found with findProgram,
// is started directly with the standard streams inherited, and the call
// waits for it. The result is a wait status: its low 16 bits are zero
// exactly when the program ran and exited with 0. A program that cannot be started gives 127 << 8.
// A batch file (.bat or .cmd that is not an executable program: no ELF or "#!" start) is run by
// runBatchFile instead.
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
