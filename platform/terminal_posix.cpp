#include "platform/batchfile.h"

#include <cstdio>
#include <termios.h>
#include <unistd.h>

namespace platform
{

void pauseForKey(std::FILE* out, bool waitForKey)
{
    out = out ? out : stdout;
    std::fputs("Press any key to continue . . . ", out);
    std::fflush(out);
    // Only the terminal's foreground process may read it; anyone else would
    // be stopped by SIGTTIN, and with it the whole window.
    if (waitForKey && ::isatty(STDIN_FILENO) && ::tcgetpgrp(STDIN_FILENO) == ::getpgrp()) {
        termios saved{};
        if (::tcgetattr(STDIN_FILENO, &saved) == 0) {
            termios raw = saved;
            raw.c_lflag &= static_cast<tcflag_t>(~(ICANON | ECHO));
            raw.c_cc[VMIN] = 1;
            raw.c_cc[VTIME] = 0;
            ::tcsetattr(STDIN_FILENO, TCSANOW, &raw);
            char key = 0;
            [[maybe_unused]] const auto n = ::read(STDIN_FILENO, &key, 1);
            ::tcsetattr(STDIN_FILENO, TCSANOW, &saved);
        }
    }
    std::fputc('\n', out);
    std::fflush(out);
}

} // namespace platform
