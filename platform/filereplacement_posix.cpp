#include "platform/filereplacement.h"

#include <cerrno>
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

bool writeAll(int fd, const char* data, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = ::write(fd, data + done, size - done);
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
// Its mode, owner and group go into old, for the new file to keep.
bool mayReplace(const std::string& path, struct stat& old, bool& exists)
{
    exists = ::lstat(path.c_str(), &old) == 0 && S_ISREG(old.st_mode);
    if (!exists)
        return true;
    return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

} // namespace

FileReplacement::FileReplacement(const std::string& target) : path(target)
{
    struct stat old {
    };
    fd = mayReplace(path, old, exists) ? createBeside(path, beside) : -1;
    mode = old.st_mode & 07777;
    owner = old.st_uid;
    group = old.st_gid;
    if (fd < 0)
        fail(errno);
}

FileReplacement::~FileReplacement()
{
    if (fd >= 0) {
        ::close(fd);
        ::unlink(beside.c_str());
    }
}

void FileReplacement::fail(int error)
{
    if (reason.empty())
        reason = std::strerror(error);
    if (fd >= 0) {
        ::close(fd);
        ::unlink(beside.c_str());
        fd = -1;
    }
}

bool FileReplacement::write(const char* data, std::size_t size)
{
    if (fd < 0)
        return false;
    if (!writeAll(fd, data, size))
        fail(errno);
    return fd >= 0;
}

// In a folder shared by a group, a colleague's file stays the group's; only
// root may give it back its owner too. A group this user is not in cannot
// be given: the file then takes the user's own, as any new file would. The
// mode comes last, as a change of owner clears the set-id bits.
bool FileReplacement::keepOwnership()
{
    const uid_t keptOwner = ::geteuid() == 0 ? uid_t(owner) : uid_t(-1);
    if (::fchown(fd, keptOwner, gid_t(group)) != 0 && errno != EPERM)
        return false;
    return ::fchmod(fd, mode_t(mode)) == 0;
}

bool FileReplacement::commit()
{
    if (fd < 0)
        return false;
    // Errors of a full disk may show only at fsync or close.
    int failure = 0;
    if ((exists && !keepOwnership()) || ::fsync(fd) != 0)
        failure = errno;
    if (::close(fd) != 0 && failure == 0)
        failure = errno;
    fd = -1;
    // rename replaces a link of that name; it never writes through one.
    if (failure == 0 && ::rename(beside.c_str(), path.c_str()) != 0)
        failure = errno;
    if (failure == 0)
        return true;
    ::unlink(beside.c_str());
    reason = std::strerror(failure);
    return false;
}

} // namespace platform
