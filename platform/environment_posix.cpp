#include "platform/environment.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

extern char** environ;

namespace platform
{

std::size_t environmentEntryLimit(const std::string& name)
{
    // The kernel's MAX_ARG_STRLEN, which counts the terminating NUL.
    const long page = ::sysconf(_SC_PAGESIZE);
    const std::size_t single = static_cast<std::size_t>(page > 0 ? page : 4096) * 32 - 1;
    // All entries and arguments together must fit in ARG_MAX as well, which
    // a small stack limit makes small; room is kept for a command line.
    const long argMax = ::sysconf(_SC_ARG_MAX);
    if (argMax <= 0)
        return single;
    const std::string own = name + "=";
    std::size_t used = 64 * 1024;
    for (char** e = environ; *e; ++e) {
        if (std::strncmp(*e, own.c_str(), own.size()) != 0)
            used += std::strlen(*e) + 1 + sizeof(char*);
    }
    const auto total = static_cast<std::size_t>(argMax);
    return used >= total ? 0 : std::min(single, total - used - 1);
}

bool putEnv(const std::string& entry)
{
    const auto eq = entry.find('=');
    if (eq == std::string::npos || eq == 0)
        return false;
    const std::string name = entry.substr(0, eq);
    if (entry.size() > environmentEntryLimit(name))
        return false;
    const std::string value = entry.substr(eq + 1);
    if (value.empty())
        return ::unsetenv(name.c_str()) == 0;
    return ::setenv(name.c_str(), value.c_str(), 1) == 0;
}

} // namespace platform
