#include "platform/signals.h"

#include <csignal>
#include <cstring>
#include <unistd.h>

namespace platform
{

namespace
{

constexpr int terminating[] = {SIGTERM, SIGHUP};
constexpr std::size_t maxPaths = 8;
constexpr std::size_t maxPath = 4096;

// What the handler removes; plain arrays, since it may only make system calls.
char cleanupPaths[maxPaths][maxPath];
std::size_t cleanupCount = 0;
struct sigaction previous[sizeof terminating / sizeof terminating[0]];

void removeAndEnd(int signal)
{
    // The last path is the directory, removed once it is empty.
    for (std::size_t i = 0; i + 1 < cleanupCount; ++i)
        ::unlink(cleanupPaths[i]);
    if (cleanupCount > 0)
        ::rmdir(cleanupPaths[cleanupCount - 1]);
    ::signal(signal, SIG_DFL);
    ::raise(signal);
}

void keep(const std::string& path)
{
    if (cleanupCount < maxPaths && path.size() < maxPath)
        std::memcpy(cleanupPaths[cleanupCount++], path.c_str(), path.size() + 1);
}

} // namespace

void ignoreBrokenPipe()
{
    ::signal(SIGPIPE, SIG_IGN);
}

ChildSignals::ChildSignals()
{
    ::posix_spawnattr_init(&attr);
    sigset_t defaults;
    sigemptyset(&defaults);
    // Caught signals go back to their default at exec anyway; an ignored
    // SIGHUP (nohup) is the user's choice and stays.
    sigaddset(&defaults, SIGPIPE);
    ::posix_spawnattr_setsigdefault(&attr, &defaults);
    ::posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETSIGDEF);
}

ChildSignals::~ChildSignals()
{
    ::posix_spawnattr_destroy(&attr);
}

CleanupOnTermination::CleanupOnTermination(const std::string& dir, const char* const* names)
{
    cleanupCount = 0;
    for (; *names; ++names)
        keep(dir + "/" + *names);
    keep(dir);
    struct sigaction action {
    };
    action.sa_handler = removeAndEnd;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < sizeof terminating / sizeof terminating[0]; ++i) {
        ::sigaction(terminating[i], &action, &previous[i]);
        // Under nohup a hangup is ignored, and stays so.
        if (previous[i].sa_handler == SIG_IGN)
            ::sigaction(terminating[i], &previous[i], nullptr);
    }
}

CleanupOnTermination::~CleanupOnTermination()
{
    for (std::size_t i = 0; i < sizeof terminating / sizeof terminating[0]; ++i)
        ::sigaction(terminating[i], &previous[i], nullptr);
    cleanupCount = 0;
}

} // namespace platform
