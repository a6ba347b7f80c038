#pragma once

#include <spawn.h>
#include <string>

namespace platform
{

// A closed or full standard output must not end the program: writes to it
// fail with EPIPE instead, and what they said is dropped.
void ignoreBrokenPipe();

// Spawn attributes that give a child the default disposition of SIGPIPE,
// which this process ignores, as a freshly started program expects.
class ChildSignals
{
public:
    ChildSignals();
    ~ChildSignals();
    ChildSignals(const ChildSignals&) = delete;
    ChildSignals& operator=(const ChildSignals&) = delete;

    const posix_spawnattr_t* attributes() const { return &attr; }

private:
    posix_spawnattr_t attr;
};

// Removes a private directory and the files of the names given when the
// process is ended by SIGTERM or SIGHUP while this object lives, then ends
// it by that signal as before. One at a time.
class CleanupOnTermination
{
public:
    CleanupOnTermination(const std::string& dir, const char* const* names);
    ~CleanupOnTermination();
    CleanupOnTermination(const CleanupOnTermination&) = delete;
    CleanupOnTermination& operator=(const CleanupOnTermination&) = delete;
};

} // namespace platform
