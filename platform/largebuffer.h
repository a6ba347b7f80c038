#pragma once

#include <cstddef>
#include <cstring>

namespace platform
{

// Fresh memory for a store of up to gigabytes that is filled once and read
// often: a reservation costs nothing until it is filled, and growing past it
// moves the pages rather than copying them. Whether the kernel backs it with
// large pages is left to the system's setting: asked for, they made the
// first opens after a report was written up to three times slower.
// Throws std::bad_alloc when memory is not had.
class LargeBuffer
{
public:
    LargeBuffer() = default;
    ~LargeBuffer();
    LargeBuffer(LargeBuffer&& other) noexcept;
    LargeBuffer& operator=(LargeBuffer&& other) noexcept;
    LargeBuffer(const LargeBuffer&) = delete;
    LargeBuffer& operator=(const LargeBuffer&) = delete;

    // Room for so many bytes in all; never shrinks.
    void reserve(std::size_t bytes);
    // Inline: a store takes them once a line.
    void resize(std::size_t bytes)
    {
        if (bytes > mapped)
            grow(bytes);
        used = bytes;
    }
    void append(const void* data, std::size_t bytes)
    {
        const std::size_t at = used;
        resize(used + bytes);
        if (bytes > 0)
            std::memcpy(begin + at, data, bytes);
    }

    char* data() { return begin; }
    const char* data() const { return begin; }
    std::size_t size() const { return used; }
    std::size_t capacity() const { return mapped; }
    // The memory the bytes held take: the pages they touch.
    std::size_t footprint() const { return page ? (used + page - 1) / page * page : 0; }

private:
    void grow(std::size_t bytes);

    std::size_t page = 0; // known once mapped
    char* begin = nullptr;
    std::size_t used = 0;
    std::size_t mapped = 0;
};

} // namespace platform
