#include "platform/batchfile.h"
#include "platform/commandline.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
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

} // namespace

int runCommandLine(const std::string& line)
{
    std::vector<std::string> args = splitCommandLine(line);
    if (args.empty() || args.front().empty())
        return notStarted;
    if (isBatchFileName(args.front()))
        return runBatchFile(args.front());

    std::vector<char*> argv;
    for (auto& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);

    // Our own buffered output must come before the child's.
    std::fflush(stdout);
    std::fflush(stderr);
    pid_t pid = 0;
    const int error = ::posix_spawnp(&pid, argv[0], nullptr, nullptr, argv.data(), environ);
    if (error != 0) {
        // Say why in the console, as a command interpreter would.
        std::fprintf(stderr, "%s: cannot be started: %s\n", argv[0], std::strerror(error));
        return notStarted;
    }
    return waitFor(pid);
}

} // namespace platform
