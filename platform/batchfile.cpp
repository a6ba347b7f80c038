#include "platform/batchfile.h"
#include "platform/commandline.h"
#include "platform/files.h"

#include <sstream>
#include <string>

namespace platform
{

namespace
{

// Far beyond any batch Tamsel writes, a 100 KB node list included.
constexpr std::size_t maxBatchFileSize = 16 << 20;

// How deep batch files call batch files in this thread just now.
thread_local int depth = 0;

std::string lowered(std::string s)
{
    for (auto& c : s)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return s;
}

void printLine(std::FILE* out, const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), out);
    std::fputc('\n', out);
    std::fflush(out);
}

// Runs one line; a command line sets the errorlevel.
void runLine(const std::string& line, const BatchHooks& hooks, std::FILE* out, int& errorlevel)
{
    const std::string key = lowered(line);
    if (line.empty() || key == "@echo off")
        return;
    if (key == "echo.") {
        printLine(out, {});
    } else if (key.rfind("echo ", 0) == 0) {
        printLine(out, line.substr(5));
    } else if (key == "pause") {
        if (hooks.beforePause)
            hooks.beforePause(errorlevel);
        pauseForKey(out, hooks.waitForKey);
    } else {
        errorlevel = hooks.command ? hooks.command(line) : runCommandLine(line);
    }
}

int runLines(std::istream& in, const BatchHooks& hooks)
{
    std::FILE* out = hooks.out ? hooks.out : stdout;
    if (depth >= maxBatchDepth) {
        std::fprintf(out, "Batch files nested more than %d deep: stopped.\n", maxBatchDepth);
        std::fflush(out);
        return exitStatus(1);
    }
    ++depth;
    int errorlevel = 0;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        runLine(line, hooks, out, errorlevel);
    }
    --depth;
    return errorlevel;
}

} // namespace

// Read whole before any line runs: no descriptor of it reaches the programs
// it starts, and no line can be longer than the file may be.
int runBatchFile(const std::string& path, const BatchHooks& hooks)
{
    std::string text;
    std::string problem;
    if (!readFile(path, maxBatchFileSize, text, problem)) {
        std::fprintf(stderr, "cannot read %s: %s\n", path.c_str(), problem.c_str());
        return exitStatus(1);
    }
    return runBatchText(text, hooks);
}

int runBatchText(const std::string& text, const BatchHooks& hooks)
{
    std::istringstream in(text);
    return runLines(in, hooks);
}

} // namespace platform
