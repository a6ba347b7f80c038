// Stand-in for the closed body library. It reads a text database:
//   HXDB 1
//   BODY <description>
// The description is the rest of the line, byte for byte. Anything that is
// not such a file counts as no bodies, quickly: the count is asked for on
// every keystroke in a file field.
#include "zeb_standin.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace
{

constexpr std::size_t infoSize = 1024;
constexpr char magic[] = "HXDB 1";
constexpr char bodyTag[] = "BODY ";

struct Cache {
    std::string file;
    long long size = -1;
    long long mtime = -1;
    long long mtimeNs = -1;
    std::vector<std::string> bodies;
};

Cache cache;
int terminateCount = 0;

// Cuts to at most max bytes without splitting a UTF-8 sequence.
std::string clipped(std::string text, std::size_t max)
{
    if (text.size() <= max)
        return text;
    std::size_t cut = max;
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
        --cut;
    text.resize(cut);
    return text;
}

bool hasMagic(const std::string& data)
{
    const std::size_t len = std::strlen(magic);
    if (data.compare(0, len, magic) != 0)
        return false;
    return data.size() == len || data[len] == '\n' || data.compare(len, 2, "\r\n") == 0;
}

// Reads a database file; a foreign file is given up after its first block,
// so that a large one costs no more than a small one.
bool readDatabase(const char* file, std::string& data)
{
    std::FILE* f = std::fopen(file, "rb");
    if (!f)
        return false;
    char buf[65536];
    std::size_t n = 0;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) {
        data.append(buf, n);
        if (!hasMagic(data.substr(0, std::strlen(magic) + 2)))
            break;
    }
    const bool ok = !std::ferror(f);
    std::fclose(f);
    return ok;
}

std::vector<std::string> parse(const std::string& data)
{
    std::vector<std::string> bodies;
    if (!hasMagic(data) || data.find('\0') != std::string::npos)
        return bodies;
    std::size_t start = 0;
    while (start < data.size()) {
        std::size_t end = data.find('\n', start);
        if (end == std::string::npos)
            end = data.size();
        std::string line = data.substr(start, end - start);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.compare(0, std::strlen(bodyTag), bodyTag) == 0)
            bodies.push_back(clipped(line.substr(std::strlen(bodyTag)), infoSize - 1));
        start = end + 1;
    }
    return bodies;
}

// The bodies of a file, from the cache while the file is unchanged.
const std::vector<std::string>* bodiesOf(const char* file)
{
    static const std::vector<std::string> none;
    struct stat st {
    };
    if (!file || !*file || ::stat(file, &st) != 0 || !S_ISREG(st.st_mode))
        return &none;
    if (cache.file == file && cache.size == st.st_size && cache.mtime == st.st_mtim.tv_sec &&
        cache.mtimeNs == st.st_mtim.tv_nsec)
        return &cache.bodies;
    std::string data;
    if (!readDatabase(file, data))
        return &none;
    cache = Cache{file, st.st_size, st.st_mtim.tv_sec, st.st_mtim.tv_nsec, parse(data)};
    return &cache.bodies;
}

} // namespace

extern "C" {

int ZEB_BodyCount(const char* file)
{
    return static_cast<int>(bodiesOf(file)->size());
}

int ZEB_GetBodyInfo(const char* file, int index, char* info)
{
    if (!info)
        return 0;
    info[0] = '\0';
    const auto* bodies = bodiesOf(file);
    if (index < 1 || static_cast<std::size_t>(index) > bodies->size())
        return 0;
    const std::string& text = (*bodies)[static_cast<std::size_t>(index) - 1];
    std::memcpy(info, text.c_str(), text.size() + 1);
    return 1;
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
