// libFuzzer target for the batch interpreter, platform::runBatchText, on any
// batch text. Command lines reach a stand-in that records them and answers
// with a status made from the line's length, so nothing is ever run. What
// must hold:
// - the result is the status of the last command line run, 0 if none;
// - beforePause sees the status of the last command line before it, 0 if
//   none;
// - no command line holds a line feed;
// - no crash, however the text looks.
//
// Input: the batch text.
#include "platform/batchfile.h"
#include "require.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static std::FILE* const devNull = std::fopen("/dev/null", "w");
    require(devNull != nullptr, "cannot open /dev/null");
    int last = 0;
    platform::BatchHooks hooks;
    hooks.command = [&](const std::string& line) {
        require(line.find('\n') == std::string::npos, "a command line holds a line feed");
        return last = int(line.size() & 0xffff) << 8;
    };
    hooks.beforePause = [&](int errorlevel) {
        require(errorlevel == last, "pause sees another errorlevel than the last command's");
    };
    hooks.out = devNull;
    hooks.waitForKey = false;

    const std::string text(reinterpret_cast<const char*>(data), size);
    require(platform::runBatchText(text, hooks) == last, "result is not the last command's");
    return 0;
}
