#include "platform/files.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <random>
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

// A new file of our own beside path, made with O_EXCL so that nothing of
// that name, a link least of all, is ever opened; the umask applies as to
// any new file.
int createBeside(const std::string& path, std::string& name)
{
    static const char letters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        name = directoryOf(path) + "/.tamsel-";
        for (int i = 0; i < 8; ++i)
            name += letters[random() % (sizeof letters - 1)];
        const int fd =
            ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST)
            return fd;
    }
    return -1;
}

// The file a name stands for must be one the user may write, as when it was
// opened for writing: a read-only or immutable file is refused, not
// replaced. A link is replaced, never followed, so only a file counts.
// Its mode goes into mode, for the new file to keep.
bool mayReplace(const std::string& path, mode_t& mode, bool& exists)
{
    struct stat st {
    };
    exists = ::lstat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
    if (!exists)
        return true;
    mode = st.st_mode & 07777;
    return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

} // namespace

bool replaceFile(const std::string& path, const std::string& bytes, std::string& error)
{
    mode_t mode = 0;
    bool exists = false;
    std::string tmp;
    const int fd = mayReplace(path, mode, exists) ? createBeside(path, tmp) : -1;
    if (fd < 0) {
        error = std::strerror(errno);
        return false;
    }
    // Errors of a full disk may show only at fsync or close.
    int failure = 0;
    if (!writeAll(fd, bytes) || (exists && ::fchmod(fd, mode) != 0) || ::fsync(fd) != 0)
        failure = errno;
    if (::close(fd) != 0 && failure == 0)
        failure = errno;
    // rename replaces a link of that name; it never writes through one.
    if (failure == 0 && ::rename(tmp.c_str(), path.c_str()) != 0)
        failure = errno;
    if (failure == 0)
        return true;
    ::unlink(tmp.c_str());
    error = std::strerror(failure);
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
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        reason = S_ISDIR(st.st_mode) ? "is a directory" : "not an ordinary file";
        ::close(fd);
        return -2;
    }
    // Reads of an ordinary file block as usual.
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    return fd;
}

} // namespace platform
