#include "largebuffer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>

namespace platform
{

namespace
{

std::size_t roundUp(std::size_t bytes, std::size_t unit)
{
    return (bytes + unit - 1) / unit * unit;
}

std::size_t smallPage()
{
    static const std::size_t size = std::size_t(::sysconf(_SC_PAGESIZE));
    return size;
}

// Maps bytes (a multiple of the page size) starting at a large page's
// boundary, so that all of it can be backed by large pages.
char* mapAligned(std::size_t bytes)
{
    const std::size_t slack = bytes >= LargeBuffer::largePage ? LargeBuffer::largePage : 0;
    void* got =
        ::mmap(nullptr, bytes + slack, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (got == MAP_FAILED)
        throw std::bad_alloc();
    char* start = static_cast<char*>(got);
    if (slack == 0)
        return start;
    char* aligned = reinterpret_cast<char*>(
        roundUp(reinterpret_cast<std::uintptr_t>(start), LargeBuffer::largePage));
    if (aligned > start)
        ::munmap(start, std::size_t(aligned - start));
    if (std::size_t tail = std::size_t(start + slack - aligned); tail > 0)
        ::munmap(aligned + bytes, tail);
#ifdef MADV_HUGEPAGE
    // A hint: refused, it costs nothing. Never for a part of the mapping,
    // which would split it and keep mremap from growing it.
    if (bytes <= LargeBuffer::largePageReach)
        ::madvise(aligned, bytes, MADV_HUGEPAGE);
#endif
    return aligned;
}

} // namespace

LargeBuffer::~LargeBuffer()
{
    if (begin)
        ::munmap(begin, mapped);
}

LargeBuffer::LargeBuffer(LargeBuffer&& other) noexcept
    : begin(std::exchange(other.begin, nullptr)), used(std::exchange(other.used, 0)),
      mapped(std::exchange(other.mapped, 0))
{
}

LargeBuffer& LargeBuffer::operator=(LargeBuffer&& other) noexcept
{
    if (this != &other) {
        LargeBuffer gone(std::move(*this));
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
    const std::size_t wanted = roundUp(bytes, bytes >= largePage ? largePage : smallPage());
    if (!begin) {
        begin = mapAligned(wanted);
        mapped = wanted;
        return;
    }
    void* moved = ::mremap(begin, mapped, wanted, MREMAP_MAYMOVE);
    if (moved == MAP_FAILED)
        throw std::bad_alloc();
    begin = static_cast<char*>(moved);
    mapped = wanted;
}

std::size_t LargeBuffer::footprint() const
{
    return roundUp(used, mapped >= largePage ? largePage : smallPage());
}

void LargeBuffer::resize(std::size_t bytes)
{
    if (bytes > mapped)
        reserve(std::max(bytes, mapped + mapped / 2));
    used = bytes;
}

void LargeBuffer::append(const void* data, std::size_t bytes)
{
    const std::size_t at = used;
    resize(used + bytes);
    if (bytes > 0)
        std::memcpy(begin + at, data, bytes);
}

} // namespace platform
