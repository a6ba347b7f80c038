#include "memory.h"

#include <fstream>
#include <string>

namespace platform
{

std::int64_t availableMemory()
{
    std::ifstream meminfo("/proc/meminfo");
    std::string name;
    std::int64_t kib = 0;
    while (meminfo >> name) {
        if (name == "MemAvailable:" && meminfo >> kib)
            return kib * 1024;
        meminfo.ignore(1 << 10, '\n');
    }
    return 0;
}

} // namespace platform
