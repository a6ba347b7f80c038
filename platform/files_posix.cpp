#include "platform/files.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform
{

namespace
{

std::string directoryOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool writeAll(int fd, const std::string& bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

// The permissions a plain new file would get.
mode_t newFileMode()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

} // namespace

bool replaceFile(const std::string& path, const std::string& bytes, std::string& error)
{
    std::string tmp = directoryOf(path) + "/.tamsel-XXXXXX";
    const int fd = ::mkstemp(tmp.data());
    if (fd < 0) {
        error = std::strerror(errno);
        return false;
    }
    // Errors of a full disk may show only at fsync or close.
    const bool written =
        ::fchmod(fd, newFileMode()) == 0 && writeAll(fd, bytes) && ::fsync(fd) == 0;
    int saved = errno;
    if (::close(fd) != 0 && written)
        saved = errno;
    else if (written)
        saved = 0;
    // rename replaces a link of that name; it never writes through one.
    if (saved == 0 && ::rename(tmp.c_str(), path.c_str()) == 0)
        return true;
    if (saved == 0)
        saved = errno;
    ::unlink(tmp.c_str());
    error = std::strerror(saved);
    return false;
}

std::string workingDirectory(bool* deleted)
{
    if (deleted)
        *deleted = false;
    std::string buf(1 << 16, '\0');
    if (::getcwd(buf.data(), buf.size()))
        return buf.c_str();
    if (deleted)
        *deleted = errno == ENOENT;
    // Linux still knows the name of a deleted directory.
    char link[4096];
    const ssize_t n = ::readlink("/proc/self/cwd", link, sizeof link - 1);
    if (n > 0) {
        std::string name(link, static_cast<std::size_t>(n));
        const std::string mark = " (deleted)";
        if (name.size() > mark.size() &&
            name.compare(name.size() - mark.size(), mark.size(), mark) == 0)
            name.resize(name.size() - mark.size());
        return name;
    }
    const char* pwd = std::getenv("PWD");
    return pwd ? pwd : "";
}

} // namespace platform
