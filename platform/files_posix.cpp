#include "platform/files.h"

#include "platform/filereplacement.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace platform
{

bool replaceFile(const std::string& path, const std::string& bytes, std::string& error)
{
    FileReplacement file(path);
    if (file.write(bytes.data(), bytes.size()) && file.commit())
        return true;
    error = file.error();
    return false;
}

bool readFile(const std::string& path, std::size_t max, std::string& bytes, std::string& error)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        error = std::strerror(errno);
        return false;
    }
    char buf[65536];
    ssize_t n = 0;
    while ((n = ::read(fd, buf, sizeof buf)) != 0) {
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 || bytes.size() + static_cast<std::size_t>(n) > max) {
            error = n < 0 ? std::strerror(errno) : "larger than " + std::to_string(max) + " bytes";
            ::close(fd);
            return false;
        }
        bytes.append(buf, static_cast<std::size_t>(n));
    }
    ::close(fd);
    return true;
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

int openRegularFile(const std::string& path, std::string& reason)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        reason = std::strerror(errno);
        return -1;
    }
    struct stat st {
    };
    if (::fstat(fd, &st) != 0) {
        reason = std::strerror(errno);
        ::close(fd);
        return -1;
    }
    if (!S_ISREG(st.st_mode)) {
        reason = S_ISDIR(st.st_mode) ? "is a directory" : "not an ordinary file";
        ::close(fd);
        return -2;
    }
    // Reads of an ordinary file block as usual.
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    return fd;
}

void guardStandardDescriptors()
{
    for (int fd = 0; fd <= 2; ++fd) {
        if (::fcntl(fd, F_GETFD) != -1 || errno != EBADF)
            continue;
        // The lowest free descriptor is the closed one.
        const int opened = ::open("/dev/null", fd == 0 ? O_RDONLY : O_WRONLY);
        if (opened >= 0 && opened != fd)
            ::close(opened);
    }
}

} // namespace platform
