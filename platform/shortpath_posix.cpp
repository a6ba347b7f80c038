#include "platform/shortpath.h"

namespace platform
{

std::string shortPathName(const std::string&)
{
    return {};
}

} // namespace platform
