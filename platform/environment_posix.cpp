#include "platform/environment.h"

#include <cstdlib>
#include <unistd.h>

namespace platform
{

std::size_t environmentEntryLimit()
{
    // The kernel's MAX_ARG_STRLEN, which counts the terminating NUL.
    const long page = ::sysconf(_SC_PAGESIZE);
    return static_cast<std::size_t>(page > 0 ? page : 4096) * 32 - 1;
}

bool putEnv(const std::string& entry)
{
    if (entry.size() > environmentEntryLimit())
        return false;
    const auto eq = entry.find('=');
    if (eq == std::string::npos || eq == 0)
        return false;
    const std::string name = entry.substr(0, eq);
    const std::string value = entry.substr(eq + 1);
    if (value.empty())
        return ::unsetenv(name.c_str()) == 0;
    return ::setenv(name.c_str(), value.c_str(), 1) == 0;
}

} // namespace platform
