#pragma once

#include <cstddef>

namespace platform
{

// Fresh memory for a store of up to gigabytes that is filled once and read
// often. The kernel may back a store of up to a few hundred megabytes with
// large pages where it offers them, which fault in sooner than small ones; growing moves the pages
// rather than copying them. Throws std::bad_alloc when memory is not had.
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
    void resize(std::size_t bytes);
    void append(const void* data, std::size_t bytes);

    char* data() { return begin; }
    const char* data() const { return begin; }
    std::size_t size() const { return used; }
    std::size_t capacity() const { return mapped; }
    // The memory the bytes held take at most: the pages they touch, large
    // ones where the kernel may have given those.
    std::size_t footprint() const;

    // Below this a store is mapped in small pages alone.
    static constexpr std::size_t largePage = std::size_t(2) << 20;
    // Large pages are asked for a store reserved no larger than this only:
    // measured on a virtual machine, a gigabyte of fresh large pages took 2
    // to 3.5 s to fault in against 1.1 s in small ones, while a hundred
    // megabytes came a fifth sooner in large pages.
    static constexpr std::size_t largePageReach = std::size_t(256) << 20;

private:
    char* begin = nullptr;
    std::size_t used = 0;
    std::size_t mapped = 0;
};

} // namespace platform
