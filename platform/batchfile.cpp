#include "platform/batchfile.h"
#include "platform/commandline.h"

#include <cstdio>
#include <fstream>
#include <string>

namespace platform
{

namespace
{

std::string lowered(std::string s)
{
    for (auto& c : s)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return s;
}

void printLine(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

// Runs one line; a command line sets the errorlevel.
void runLine(const std::string& line, int& errorlevel)
{
    const std::string key = lowered(line);
    if (line.empty() || key == "@echo off")
        return;
    if (key == "echo.") {
        printLine({});
    } else if (key.rfind("echo ", 0) == 0) {
        printLine(line.substr(5));
    } else if (key == "pause") {
        pauseForKey();
    } else {
        errorlevel = runCommandLine(line);
    }
}

} // namespace

int runBatchFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return exitStatus(1);
    }
    int errorlevel = 0;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        runLine(line, errorlevel);
    }
    return errorlevel;
}

} // namespace platform
