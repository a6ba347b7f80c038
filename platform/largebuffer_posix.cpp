#include "largebuffer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>

namespace platform
{

namespace
{

std::size_t pageSize()
{
    static const std::size_t size = std::size_t(::sysconf(_SC_PAGESIZE));
    return size;
}

std::size_t roundUp(std::size_t bytes)
{
    return (bytes + pageSize() - 1) / pageSize() * pageSize();
}

} // namespace

LargeBuffer::~LargeBuffer()
{
    if (begin)
        ::munmap(begin, mapped);
}

LargeBuffer::LargeBuffer(LargeBuffer&& other) noexcept
    : page(other.page), begin(std::exchange(other.begin, nullptr)),
      used(std::exchange(other.used, 0)), mapped(std::exchange(other.mapped, 0))
{
}

LargeBuffer& LargeBuffer::operator=(LargeBuffer&& other) noexcept
{
    if (this != &other) {
        LargeBuffer gone(std::move(*this));
        page = other.page;
        begin = std::exchange(other.begin, nullptr);
        used = std::exchange(other.used, 0);
        mapped = std::exchange(other.mapped, 0);
    }
    return *this;
}

void LargeBuffer::reserve(std::size_t bytes)
{
    if (bytes <= mapped)
        return;
    const std::size_t wanted = roundUp(bytes);
    void* got =
        begin ? ::mremap(begin, mapped, wanted, MREMAP_MAYMOVE)
              : ::mmap(nullptr, wanted, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (got == MAP_FAILED)
        throw std::bad_alloc();
    begin = static_cast<char*>(got);
    mapped = wanted;
    page = pageSize();
}

void LargeBuffer::grow(std::size_t bytes)
{
    reserve(std::max(bytes, mapped + mapped / 2));
}

} // namespace platform
