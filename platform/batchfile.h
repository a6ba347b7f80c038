#pragma once

#include <cstdio>
#include <functional>
#include <string>

namespace platform
{

// What a batch run does with the lines that reach outside the interpreter.
// The defaults are the real ones; a fuzzer or a test replaces them.
struct BatchHooks {
    // Runs one command line and gives its status (runCommandLine's form).
    std::function<int(const std::string& line)> command;
    // Told the errorlevel just before each pause, so that a console can hand
    // the status over before it waits for a key it may never get.
    std::function<void(int errorlevel)> beforePause;
    // Where echo and the pause prompt go.
    std::FILE* out = nullptr; // standard output
    // Whether pause may wait for a key (it never does without a terminal).
    bool waitForKey = true;
};

// Batch files calling batch files end here with an error, not with the stack.
constexpr int maxBatchDepth = 16;

// Runs a small batch file of the kind Tamsel writes, line by line:
// "@echo off", "echo.", "echo TEXT", "pause" and command lines. The result
// is the errorlevel after the last line: the status of the last command
// line (as runCommandLine gives it), 0 if there was none. A file that cannot
// be read, or one nested deeper than maxBatchDepth, gives a non-zero status.
int runBatchFile(const std::string& path, const BatchHooks& hooks = {});

// The same for batch text held in memory.
int runBatchText(const std::string& text, const BatchHooks& hooks = {});

// Prints the pause prompt and, when standard input is a terminal, waits for
// one key without Enter. Returns at once otherwise.
void pauseForKey(std::FILE* out = nullptr, bool waitForKey = true);

} // namespace platform
