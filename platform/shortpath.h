#pragma once

#include <string>

namespace platform
{

// The short (8.3) form of an existing path, or an empty string when there is
// none. Systems without short names always answer with an empty string, and
// callers keep the whole path.
std::string shortPathName(const std::string& path);

} // namespace platform
