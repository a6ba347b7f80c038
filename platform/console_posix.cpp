#include "platform/batchfile.h"
#include "platform/commandline.h"
#include "platform/console.h"
#include "platform/files.h"
#include "platform/signals.h"
#include "platform/wait.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace platform
{

namespace
{

// How long a terminal that returned at once may take to start the console.
constexpr auto startGrace = std::chrono::seconds(3);

bool exists(const std::string& path)
{
    struct stat st {
    };
    return ::stat(path.c_str(), &st) == 0;
}

bool readStatus(const std::string& file, int& status)
{
    std::ifstream in(file);
    return static_cast<bool>(in >> status);
}

// Waits until the console program that announced itself has ended: its lock
// on FILE.started goes with it, whether it ended well or was killed.
void waitForConsoleEnd(const std::string& started)
{
    const int fd = ::open(started.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return;
    if (!hasWaitHook()) {
        while (::flock(fd, LOCK_SH) < 0 && errno == EINTR) {
        }
    } else {
        while (::flock(fd, LOCK_SH | LOCK_NB) < 0 && (errno == EWOULDBLOCK || errno == EINTR))
            waitStep();
    }
    ::close(fd);
}

bool waitForAnnouncement(const std::string& started)
{
    const auto until = std::chrono::steady_clock::now() + startGrace;
    while (!exists(started)) {
        if (std::chrono::steady_clock::now() > until)
            return false;
        waitStep();
    }
    return true;
}

int spawnAndWait(std::vector<std::string> args)
{
    std::vector<char*> argv;
    for (auto& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    std::fflush(stdout);
    pid_t pid = 0;
    const ChildSignals defaults;
    if (::posix_spawnp(&pid, argv[0], nullptr, defaults.attributes(), argv.data(), environ) != 0)
        return -1;
    return waitForChild(pid);
}

// The status of a console run in a terminal, or false when the terminal
// never started the console program.
bool consoleStatus(const std::string& statusFile, int terminalStatus, int& status)
{
    const std::string started = statusFile + ".started";
    if (!exists(statusFile) && !exists(started)) {
        // Some terminals return before their child has even started.
        if (terminalStatus != 0 || !waitForAnnouncement(started))
            return false;
    }
    waitForConsoleEnd(started);
    if (!readStatus(statusFile, status))
        status = exitStatus(1); // the console died before it could tell
    return true;
}

// What a console run leaves in its private directory.
// The batch goes first: a console that finds it gone tidies up after us.
const char* const ownFiles[] = {"runtamsel.bat", "status", "status.started", "status.started.tmp",
                                nullptr};

void removeTree(const std::string& dir, const std::string& statusFile)
{
    for (const char* suffix : {"", ".started", ".started.tmp"})
        ::unlink((statusFile + suffix).c_str());
    ::unlink((dir + "/runtamsel.bat").c_str());
    ::rmdir(dir.c_str());
}

// A directory for this user alone (mkdtemp), in TMPDIR or else /tmp; an
// unusable TMPDIR is named, not passed over in silence. Empty when neither
// works.
std::string privateDirectory()
{
    const char* tmp = std::getenv("TMPDIR");
    std::vector<std::string> places;
    if (tmp && *tmp)
        places.push_back(tmp);
    places.push_back("/tmp");
    for (const std::string& place : places) {
        std::string dir = place + "/tamsel-XXXXXX";
        if (::mkdtemp(dir.data()))
            return dir;
        std::fprintf(stderr, "cannot make a directory in %s%s: %s\n", place.c_str(),
                     place == "/tmp" ? "" : " (TMPDIR)", std::strerror(errno));
    }
    return {};
}

// Debian's terminals all take -T for the window's title; without it the
// window is named after the terminal, not after what runs in it.
void addTitle(std::vector<std::string>& args, const std::string& title)
{
    const bool known = args.size() == 2 && args[1] == "-e" &&
                       (args[0] == "xterm" || args[0] == "x-terminal-emulator");
    if (known && !title.empty())
        args.insert(args.begin() + 1, {"-T", title});
}

} // namespace

std::vector<std::string> terminalPrefix()
{
    const char* chosen = std::getenv("TAMSEL_TERMINAL");
    if (chosen && *chosen) {
        if (std::string(chosen) == "none")
            return {};
        return splitCommandLine(chosen);
    }
    const char* x11 = std::getenv("DISPLAY");
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    if ((!x11 || !*x11) && (!wayland || !*wayland))
        return {};
    for (const char* term : {"x-terminal-emulator", "xterm"}) {
        if (!findProgram(term).empty())
            return {term, "-e"};
    }
    return {};
}

int runInConsole(const std::string& batchText, const std::string& consoleProgram,
                 const std::string& title)
{
    std::vector<std::string> args = terminalPrefix();
    if (args.empty())
        return runBatchText(batchText);
    if (::access(consoleProgram.c_str(), X_OK) != 0) {
        std::fprintf(stderr, "no console program %s: running here\n", consoleProgram.c_str());
        return runBatchText(batchText);
    }

    const std::string dir = privateDirectory();
    if (dir.empty()) {
        std::fprintf(stderr, "no private directory for the console: running here\n");
        return runBatchText(batchText);
    }
    const std::string statusFile = dir + "/status";
    const std::string batchFile = dir + "/runtamsel.bat";
    const CleanupOnTermination cleanup(dir, ownFiles);
    std::string error;
    if (!replaceFile(batchFile, batchText, error)) {
        std::fprintf(stderr, "cannot write %s: %s: running here\n", batchFile.c_str(),
                     error.c_str());
        removeTree(dir, statusFile);
        return runBatchText(batchText);
    }

    addTitle(args, title);
    args.insert(args.end(), {consoleProgram, "--directory", workingDirectory(), "--status-file",
                             statusFile, batchFile});
    const int terminalStatus = spawnAndWait(args);
    if (terminalStatus == -1)
        std::fprintf(stderr, "cannot start the terminal %s: running here\n", args[0].c_str());
    int status = 0;
    const bool ran = terminalStatus != -1 && consoleStatus(statusFile, terminalStatus, status);
    removeTree(dir, statusFile);
    return ran ? status : runBatchText(batchText);
}

bool announceConsoleStart(const std::string& statusFile)
{
    const std::string started = statusFile + ".started";
    const std::string tmp = started + ".tmp";
    // The descriptor stays open on purpose: its lock lasts as long as we do.
    const int fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0 || ::flock(fd, LOCK_EX) < 0)
        return false;
    const std::string pid = std::to_string(::getpid()) + "\n";
    if (::write(fd, pid.data(), pid.size()) != static_cast<ssize_t>(pid.size()))
        return false;
    return ::rename(tmp.c_str(), started.c_str()) == 0;
}

bool writeConsoleStatus(const std::string& statusFile, int status)
{
    std::string error;
    return replaceFile(statusFile, std::to_string(status) + "\n", error);
}

} // namespace platform
