#pragma once

#include <cstdint>

namespace platform
{

// The memory the system can still give without swapping, in bytes, as the
// kernel estimates it; 0 when it cannot tell.
std::int64_t availableMemory();

} // namespace platform
