#include "platform/environment.h"

#include <cstdlib>

namespace platform
{

bool putEnv(const std::string& entry)
{
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
