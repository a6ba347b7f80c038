#include "platform/wait.h"

#include <cerrno>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform
{

namespace
{

std::function<void()>& hook()
{
    static std::function<void()> h;
    return h;
}

// A descriptor that becomes readable when the child ends, where the kernel
// has them (Linux 5.3); -1 otherwise, and the wait polls.
int childEndDescriptor(pid_t pid)
{
#ifdef SYS_pidfd_open
    return int(::syscall(SYS_pidfd_open, pid, 0));
#else
    (void)pid;
    return -1;
#endif
}

} // namespace

void setWaitHook(std::function<void()> h)
{
    hook() = std::move(h);
}

bool hasWaitHook()
{
    return bool(hook());
}

int waitForChild(pid_t pid)
{
    int status = 0;
    if (!hook()) {
        while (::waitpid(pid, &status, 0) < 0)
            if (errno != EINTR)
                return -1;
        return status;
    }
    const int ended = childEndDescriptor(pid);
    for (;;) {
        const pid_t got = ::waitpid(pid, &status, WNOHANG);
        if (got == pid)
            break;
        if (got < 0 && errno != EINTR) {
            status = -1;
            break;
        }
        if (hook()) // a hook may end its own run
            hook()();
        pollfd end{ended, POLLIN, 0};
        ::poll(ended >= 0 ? &end : nullptr, ended >= 0 ? 1 : 0, waitStepMs);
    }
    if (ended >= 0)
        ::close(ended);
    return status;
}

void waitStep()
{
    if (hook())
        hook()();
    ::poll(nullptr, 0, waitStepMs);
}

} // namespace platform
