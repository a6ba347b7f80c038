#pragma once

#include <QString>

#include <sys/stat.h>

// Which file a name stood for at one moment, and for a link also the file
// it leads to: another device, inode, size, modification or change time of
// either afterwards means it was written or replaced.
class FileStamp
{
public:
    explicit FileStamp(const QString& path);

    bool operator==(const FileStamp& other) const;

    bool exists = false;
    bool isDirectory = false;

private:
    struct Identity {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        timespec modified{};
        timespec changed{};

        void take(const struct stat& st);
        bool operator==(const Identity& other) const;
    };

    Identity name;   // the name itself, a link or not
    Identity target; // what it leads to; as name when it is no link
};
