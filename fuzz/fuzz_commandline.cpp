// libFuzzer target for platform::quoteArgument with platform::splitCommandLine.
// For any bytes as a file name, what must hold:
// - quoteArgument refuses (and writes nothing) exactly when the name holds a
//   NUL, CR or LF; otherwise splitCommandLine("prog " + quoted) gives back
//   {"prog", name};
// - an ordinary name (no quote, no backslash, no control character) quotes
//   to '"' + name + '"';
// - between other arguments, prog "a" QUOTED "b", the arguments around it
//   stay whole.
//
// Input: the name's bytes.
#include "platform/commandline.h"
#include "require.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{

bool isControl(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string name(reinterpret_cast<const char*>(data), size);
    using Args = std::vector<std::string>;

    std::string quoted = "untouched";
    const bool ok = platform::quoteArgument(name, quoted);
    const bool lineBreaking = name.find_first_of(std::string("\0\r\n", 3)) != std::string::npos;
    require(ok != lineBreaking, "refused a name that fits, or took one that does not");
    if (!ok) {
        require(quoted == "untouched", "wrote something while refusing");
        return 0;
    }
    require(platform::splitCommandLine("prog " + quoted) == Args{"prog", name},
            "the name does not come back");
    require(platform::splitCommandLine("prog \"a\" " + quoted + " \"b\"") ==
                Args{"prog", "a", name, "b"},
            "the arguments around the name do not stay whole");
    const bool ordinary = std::none_of(
        name.begin(), name.end(), [](char c) { return c == '"' || c == '\\' || isControl(c); });
    require(!ordinary || quoted == '"' + name + '"', "an ordinary name quoted otherwise");
    return 0;
}
