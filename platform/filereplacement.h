#pragma once

#include <cstddef>
#include <string>

namespace platform
{

// A file written anew under a name, in as many pieces as it takes: the bytes
// go into a new file beside it, which takes the name only once commit() has
// flushed and closed it. A symbolic link of that name is replaced, never
// followed; a file the user may not write (read-only, immutable) is refused
// as opening it would be, and one that is replaced keeps its mode and group
// (and, for root, its owner). Until the
// commit the old file stays as it was, and a replacement never committed
// leaves nothing behind.
class FileReplacement
{
public:
    explicit FileReplacement(const std::string& path);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    // False once anything failed; error() then gives the system's reason.
    bool write(const char* data, std::size_t size);
    bool commit();
    const std::string& error() const { return reason; }

private:
    void fail(int error);
    bool keepOwnership();

    std::string path;
    std::string beside; // the new file
    int fd = -1;
    bool exists = false;
    unsigned mode = 0;
    unsigned owner = 0;
    unsigned group = 0;
    std::string reason;
};

} // namespace platform
