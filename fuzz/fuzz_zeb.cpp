// libFuzzer target for the stand-in body library on arbitrary files. For any
// file, what must hold:
// - the count is what the file's BODY lines say: 0 without the magic first
//   line or with a NUL anywhere, never negative;
// - info is always NUL-terminated within its 1024 bytes, empty for an index
//   out of range (0, count + 1, a negative one), else the description or,
//   when longer than 1023 bytes, a prefix of it cut at most three bytes
//   short, never inside a sequence when the description is valid UTF-8;
// - asking again, in the other order, gives the same answers.
//
// Input: the file's bytes, written to a temporary file for each run.
#include "require.h"
#include "zeb/zeb.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace
{

constexpr std::size_t infoSize = 1024;

// Well-formed sequences only by their shape: a lead byte and as many
// continuation bytes as it announces.
bool isUtf8(std::string_view s)
{
    for (std::size_t i = 0; i < s.size();) {
        const auto c = static_cast<unsigned char>(s[i]);
        const std::size_t n = c < 0x80           ? 1
                              : (c >> 5) == 0x6  ? 2
                              : (c >> 4) == 0xE  ? 3
                              : (c >> 3) == 0x1E ? 4
                                                 : 0;
        if (n == 0 || i + n > s.size())
            return false;
        for (std::size_t k = 1; k < n; ++k)
            if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80)
                return false;
        i += n;
    }
    return true;
}

// The descriptions the file holds, read here the simple way.
std::vector<std::string> expectedBodies(std::string_view data)
{
    std::vector<std::string> bodies;
    if (data.find('\0') != std::string_view::npos)
        return bodies;
    bool first = true;
    while (!data.empty()) {
        const std::size_t feed = data.find('\n');
        std::string_view line = data.substr(0, feed);
        data = feed == std::string_view::npos ? std::string_view() : data.substr(feed + 1);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (first && line != "HXDB 1")
            return bodies;
        if (!first && line.substr(0, 5) == "BODY ")
            bodies.emplace_back(line.substr(5));
        first = false;
    }
    return bodies;
}

std::string tempPath()
{
    const char* dir = std::getenv("TMPDIR");
    std::string path = std::string(dir && *dir ? dir : "/tmp") + "/fuzz_zeb.XXXXXX";
    const int fd = ::mkstemp(path.data());
    require(fd >= 0, "cannot make a temporary file");
    ::close(fd);
    static std::string removeAtExit;
    removeAtExit = path;
    std::atexit([] { ::unlink(removeAtExit.c_str()); });
    return path;
}

// The answers for every index from -1 to count + 1, in either order.
std::vector<std::string> answers(const char* file, bool backwards)
{
    const int count = ZEB_BodyCount(file);
    require(count >= 0, "negative count");
    std::vector<std::string> result(std::size_t(count) + 4);
    result[0] = std::to_string(count);
    const std::unique_ptr<char[]> info(new char[infoSize]);
    for (int k = 0; k <= count + 2; ++k) {
        const int index = backwards ? count + 1 - k : k - 1;
        std::memset(info.get(), 'x', infoSize);
        ZEB_GetBodyInfo(file, index, info.get());
        require(std::memchr(info.get(), '\0', infoSize), "info not NUL-terminated");
        result[std::size_t(index) + 2] = info.get();
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const std::string path = tempPath();
    const int fd = ::open(path.c_str(), O_WRONLY | O_TRUNC);
    require(fd >= 0 && ::write(fd, data, size) == ssize_t(size) && ::close(fd) == 0,
            "cannot write the temporary file");

    const std::vector<std::string> got = answers(path.c_str(), false);
    require(answers(path.c_str(), true) == got, "a second time gives other answers");
    ZEB_Terminate();

    const std::vector<std::string> bodies =
        expectedBodies(std::string_view(reinterpret_cast<const char*>(data), size));
    require(got[0] == std::to_string(bodies.size()), "count differs from the BODY lines");
    require(got[1].empty() && got[2].empty() && got.back().empty(), "info not empty out of range");
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        const std::string& want = bodies[i];
        const std::string& info = got[i + 3];
        require(want.compare(0, info.size(), info) == 0, "info is not the description");
        require(info.size() == std::min(want.size(), infoSize - 1) ||
                    (want.size() >= infoSize && info.size() >= infoSize - 4),
                "info cut short");
        require(!isUtf8(want) || isUtf8(info), "a UTF-8 sequence cut");
    }
    return 0;
}
