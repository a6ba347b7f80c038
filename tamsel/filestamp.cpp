#include "filestamp.h"

namespace
{

bool sameTime(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

} // namespace

FileStamp::FileStamp(const QString& path)
{
    const QByteArray local = path.toLocal8Bit();
    struct stat st {
    };
    exists = ::lstat(local.constData(), &st) == 0;
    if (!exists)
        return;
    isDirectory = S_ISDIR(st.st_mode);
    name.take(st);
    target = name;
    // A link of the user's own: the tool writes through it.
    if (S_ISLNK(st.st_mode) && ::stat(local.constData(), &st) == 0) {
        target.take(st);
        isDirectory = S_ISDIR(st.st_mode);
    }
}

void FileStamp::Identity::take(const struct stat& st)
{
    device = st.st_dev;
    inode = st.st_ino;
    size = st.st_size;
    modified = st.st_mtim;
    changed = st.st_ctim;
}

bool FileStamp::Identity::operator==(const Identity& other) const
{
    return device == other.device && inode == other.inode && size == other.size &&
           sameTime(modified, other.modified) && sameTime(changed, other.changed);
}

bool FileStamp::operator==(const FileStamp& other) const
{
    return exists == other.exists && name == other.name && target == other.target;
}
