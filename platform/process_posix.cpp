#include "platform/batchfile.h"
#include "platform/commandline.h"
#include "platform/signals.h"
#include "platform/wait.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace platform
{

namespace
{

constexpr int notStarted = 127 << 8;

int waitFor(pid_t pid)
{
    const int status = waitForChild(pid);
    return status < 0 ? notStarted : status;
}

// What the system can start by itself, whatever the file is called.
bool isExecutableImage(const std::string& path)
{
    char head[4] = {};
    std::ifstream in(path, std::ios::binary);
    in.read(head, sizeof head);
    const char elf[] = {'\x7f', 'E', 'L', 'F'};
    return (in.gcount() == 4 && std::memcmp(head, elf, 4) == 0) ||
           (in.gcount() >= 2 && head[0] == '#' && head[1] == '!');
}

// A batch file is read, not executed: it needs no execute permission. A
// program needs it, whatever its name.
bool isProgramFile(const std::string& path)
{
    struct stat st {
    };
    if (::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode))
        return false;
    const bool batch = isBatchFileName(path) && !isExecutableImage(path);
    return ::access(path.c_str(), batch ? R_OK : X_OK) == 0;
}

// Why findProgram found nothing for a name.
std::string whyNotFound(const std::string& name)
{
    if (name.find('/') == std::string::npos)
        return "not found on PATH";
    struct stat st {
    };
    if (::stat(name.c_str(), &st) != 0)
        return std::strerror(errno);
    return S_ISDIR(st.st_mode) ? "is a directory" : std::strerror(EACCES);
}

} // namespace

std::string findProgram(const std::string& name)
{
    if (name.empty())
        return {};
    if (name.find('/') != std::string::npos)
        return isProgramFile(name) ? name : std::string();
    // Without PATH, the system's default path, as execvp has it: never the
    // working directory by accident.
    const char* path = std::getenv("PATH");
    const std::string dirs = path ? path : "/bin:/usr/bin";
    std::size_t start = 0;
    while (start <= dirs.size()) {
        const std::size_t end = std::min(dirs.find(':', start), dirs.size());
        const std::string dir = dirs.substr(start, end - start);
        // An empty entry means the working directory, as for execvp.
        const std::string candidate = (dir.empty() ? "." : dir) + "/" + name;
        if (isProgramFile(candidate))
            return candidate;
        start = end + 1;
    }
    return {};
}

int runCommandLine(const std::string& line)
{
    std::vector<std::string> args = splitCommandLine(line);
    if (args.empty() || args.front().empty())
        return notStarted;
    const std::string program = findProgram(args.front());
    if (program.empty()) {
        std::fprintf(stderr, "%s: cannot be started: %s\n", args.front().c_str(),
                     whyNotFound(args.front()).c_str());
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
    const ChildSignals defaults;
    const int error =
        ::posix_spawn(&pid, program.c_str(), nullptr, defaults.attributes(), argv.data(), environ);
    if (error != 0) {
        // Say why in the console, as a command interpreter would.
        std::fprintf(stderr, "%s: cannot be started: %s\n", argv[0], std::strerror(error));
        return notStarted;
    }
    return waitFor(pid);
}

} // namespace platform
