// Stand-in for the closed body library. It reads a text database:
//   HXDB 1
//   BODY <description>
// The description is the rest of the line, byte for byte. Anything that is
// not such a file counts as no bodies, quickly: the count is asked for on
// every keystroke in a file field. So the file is read as a stream with a
// small buffer, keeping no more of a line than a description needs, and a
// file is given up at a first line that is not the magic or at a NUL.
#include "zeb_standin.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace
{

constexpr std::size_t infoSize = 1024;
constexpr std::string_view bodyTag = "BODY ";

// Reads a file line by line from an offset, keeping the first `keep` bytes
// of each line (without its LF, or its CR LF). Gives up at a NUL or a read
// error: such a file is no database.
class Lines
{
public:
    Lines(int file, off_t offset) : fd(file), end(offset) {}

    // False at the end of the file and when given up.
    bool next(std::string& line)
    {
        line.clear();
        bool started = false;
        for (;;) {
            if (pos == len) {
                ssize_t n;
                do
                    n = ::pread(fd, buf, sizeof buf, end);
                while (n < 0 && errno == EINTR);
                if (n < 0 || std::memchr(buf, '\0', std::size_t(std::max<ssize_t>(n, 0)))) {
                    bad = true;
                    return false;
                }
                if (n == 0)
                    break;
                pos = 0;
                len = std::size_t(n);
                end += n;
            }
            started = true;
            const char* from = buf + pos;
            const auto* feed = static_cast<const char*>(std::memchr(from, '\n', len - pos));
            const std::size_t n = feed ? std::size_t(feed - from) : len - pos;
            line.append(from, std::min(n, keep - line.size()));
            pos += feed ? n + 1 : n;
            if (feed)
                break;
        }
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        return started;
    }
    // Where the line after the last one given starts.
    off_t offset() const { return end - off_t(len - pos); }

    bool bad = false;

private:
    // The tag, and one byte past the longest description to tell where to cut.
    static constexpr std::size_t keep = bodyTag.size() + infoSize;
    int fd;
    off_t end; // of what was read
    char buf[16384];
    std::size_t pos = 0;
    std::size_t len = 0;
};

bool isBody(std::string_view line)
{
    return line.substr(0, bodyTag.size()) == bodyTag;
}

// The length of the magic line at the start of the file, 0 when there is
// none. Read on its own, so that a foreign file costs a few bytes.
off_t magicLength(int fd)
{
    char head[8];
    const ssize_t n = ::pread(fd, head, sizeof head, 0);
    const std::string_view start(head, std::size_t(std::max<ssize_t>(n, 0)));
    for (std::string_view magic : {"HXDB 1\n", "HXDB 1\r\n"})
        if (start.substr(0, magic.size()) == magic)
            return off_t(magic.size());
    return 0;
}

// Every this many bodies the offset of its line is kept, so that a body far
// from the last one asked for is found without reading from the start: a
// list shows its bodies in any order. 8 bytes per 1024 bodies.
constexpr int checkpointEvery = 1024;

int countBodies(int fd, std::vector<off_t>& checkpoints)
{
    const off_t start = magicLength(fd);
    if (start == 0)
        return 0;
    Lines lines(fd, start);
    std::string line;
    int count = 0;
    for (off_t at = start; lines.next(line); at = lines.offset()) {
        if (!isBody(line) || count == INT_MAX)
            continue;
        if (count % checkpointEvery == 0)
            checkpoints.push_back(at);
        ++count;
    }
    return lines.bad ? 0 : count;
}

// Cuts to at most max bytes without splitting a UTF-8 sequence.
void clip(std::string& text, std::size_t max)
{
    if (text.size() <= max)
        return;
    std::size_t cut = max;
    // At most three continuation bytes; more are no UTF-8 and cut anywhere.
    while (cut > max - 3 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
        --cut;
    text.resize(cut);
}

bool operator==(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// One version of a file. Unlike the mtime, the ctime cannot be set back, so
// a rewrite shows even when the mtime is restored.
struct Version {
    dev_t dev = 0;
    ino_t ino = 0;
    off_t size = -1;
    timespec mtime{};
    timespec ctime{};

    bool operator==(const Version& o) const
    {
        return dev == o.dev && ino == o.ino && size == o.size && mtime == o.mtime &&
               ctime == o.ctime;
    }
};

// The last file asked about. Timestamps move in ticks of the clock, so a
// file changed twice within one tick keeps its times: one changed in the
// last second or two is read again on every call.
struct Cache {
    std::string file;
    Version version;
    bool settled = false;
    int count = 0;
    // The body after the last one looked up, and where its line is searched
    // from, so that asking for each body in turn reads the file once.
    int next = 1;
    off_t nextOffset = 0;
    // Where body 1, 1025, 2049, ... start.
    std::vector<off_t> checkpoints;
};

Cache cache;
int terminateCount = 0;

// Opens a regular file and brings the cache up to it; -1 for anything else.
int openDatabase(const char* file)
{
    struct stat st {
    };
    // A fifo or a device is never opened: that could block or act.
    if (!file || !*file || ::stat(file, &st) != 0 || !S_ISREG(st.st_mode))
        return -1;
    const int fd = ::open(file, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0)
        return -1;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return -1;
    }
    const Version version{st.st_dev, st.st_ino, st.st_size, st.st_mtim, st.st_ctim};
    if (cache.settled && cache.file == file && cache.version == version)
        return fd;
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    Cache fresh;
    fresh.file = file;
    fresh.version = version;
    fresh.settled = now.tv_sec - st.st_ctim.tv_sec >= 2;
    fresh.count = countBodies(fd, fresh.checkpoints);
    cache = std::move(fresh);
    return fd;
}

// Copies the description of a body the count says is there into info.
bool describe(int fd, int index, char* info)
{
    const std::size_t checkpoint = std::size_t(index - 1) / checkpointEvery;
    if ((index < cache.next || index - cache.next >= checkpointEvery) &&
        checkpoint < cache.checkpoints.size()) {
        cache.next = int(checkpoint) * checkpointEvery + 1;
        cache.nextOffset = cache.checkpoints[checkpoint];
    }
    Lines lines(fd, cache.nextOffset);
    std::string line;
    while (lines.next(line)) {
        if (!isBody(line) || cache.next++ != index)
            continue;
        cache.nextOffset = lines.offset();
        std::string text = line.substr(bodyTag.size());
        clip(text, infoSize - 1);
        std::memcpy(info, text.c_str(), text.size() + 1);
        return true;
    }
    // The file changed while being read.
    cache.next = 1;
    cache.nextOffset = 0;
    return false;
}

} // namespace

extern "C" {

int ZEB_BodyCount(const char* file)
{
    const int fd = openDatabase(file);
    if (fd < 0)
        return 0;
    ::close(fd);
    return cache.count;
}

int ZEB_GetBodyInfo(const char* file, int index, char* info)
{
    if (!info)
        return 0;
    info[0] = '\0';
    const int fd = openDatabase(file);
    if (fd < 0)
        return 0;
    const bool found = index >= 1 && index <= cache.count && describe(fd, index, info);
    ::close(fd);
    return found;
}

void ZEB_Terminate(void)
{
    ++terminateCount;
    cache = Cache{};
}

int ZEB_StandinTerminateCount(void)
{
    return terminateCount;
}

} // extern "C"
