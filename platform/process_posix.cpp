#include "platform/batchfile.h"
#include "platform/commandline.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace platform
{

namespace
{

constexpr int notStarted = 127 << 8;

int waitFor(pid_t pid)
{
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            return notStarted;
    }
    return status;
}

// What the system can start by itself, whatever the file is called.
bool isExecutableImage(const std::string& path)
{
    char head[4] = {};
    std::ifstream in(path, std::ios::binary);
    in.read(head, sizeof head);
    return (in.gcount() == 4 && std::memcmp(head,
                                            "\x7f"
                                            "ELF",
                                            4) == 0) ||
           (in.gcount() >= 2 && head[0] == '#' && head[1] == '!');
}

} // namespace

int runCommandLine(const std::string& line)
{
    std::vector<std::string> args = splitCommandLine(line);
    if (args.empty() || args.front().empty())
        return notStarted;
    const std::string program = findProgram(args.front());
    if (program.empty()) {
        std::fprintf(stderr, "%s: cannot be started: no such program\n", args.front().c_str());
        return notStarted;
    }
    if (isBatchFileName(program) && !isExecutableImage(program))
        return runBatchFile(program);

    std::vector<char*> argv;
    for (auto& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);

    // Our own buffered output must come before the child's.
    std::fflush(stdout);
    std::fflush(stderr);
    pid_t pid = 0;
    // The very file the name was resolved to, not a second PATH search.
    const int error = ::posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv.data(), environ);
    if (error != 0) {
        // Say why in the console, as a command interpreter would.
        std::fprintf(stderr, "%s: cannot be started: %s\n", argv[0], std::strerror(error));
        return notStarted;
    }
    return waitFor(pid);
}

} // namespace platform
