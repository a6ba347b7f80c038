#include "filestamp.h"

FileStamp::FileStamp(const QString& path)
{
    struct stat st {
    };
    exists = ::lstat(path.toLocal8Bit().constData(), &st) == 0;
    if (!exists)
        return;
    isDirectory = S_ISDIR(st.st_mode);
    device = st.st_dev;
    inode = st.st_ino;
    modified = st.st_mtim;
}

bool FileStamp::operator==(const FileStamp& other) const
{
    return exists == other.exists && device == other.device && inode == other.inode &&
           modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec;
}
