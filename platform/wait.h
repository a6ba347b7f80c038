#pragma once

#include <functional>
#include <sys/types.h>

namespace platform
{

// While the platform layer waits for a program or a console, it calls the
// hook again and again, at least every waitStepMs milliseconds, so that the
// application can serve its windows meanwhile. Without a hook it simply
// blocks. The hook must not start another run.
constexpr int waitStepMs = 20;
void setWaitHook(std::function<void()> hook);
bool hasWaitHook();

// Waits for the child to end and gives its wait status (-1 when it cannot
// be waited for), calling the hook meanwhile.
int waitForChild(pid_t pid);

// One step of a wait that polls: the hook, then a pause of waitStepMs.
void waitStep();

} // namespace platform
