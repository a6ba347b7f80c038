#pragma once

#include <QString>

#include <sys/stat.h>

// Which file a name stood for at one moment, link or not: another device,
// inode or modification time afterwards means it was written or replaced.
class FileStamp
{
public:
    explicit FileStamp(const QString& path);

    bool operator==(const FileStamp& other) const;

    bool exists = false;
    bool isDirectory = false;

private:
    dev_t device = 0;
    ino_t inode = 0;
    timespec modified{};
};
