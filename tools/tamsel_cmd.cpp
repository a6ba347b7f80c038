// The console program: runs a batch file inside a terminal window and tells
// the waiting program the status through a file.
//   tamsel-cmd [--directory DIR] [--status-file FILE] BATCHFILE
#include "platform/batchfile.h"
#include "platform/commandline.h"
#include "platform/console.h"
#include "platform/files.h"
#include "platform/signals.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <unistd.h>

namespace
{

int usage()
{
    std::fputs("usage: tamsel-cmd [--directory DIR] [--status-file FILE] BATCHFILE\n", stderr);
    return 2;
}

int exitCodeOf(int status)
{
    if (platform::statusSignal(status) != 0)
        return 128 + platform::statusSignal(status);
    return platform::statusExitCode(status);
}

// Tamsel, ended during the run, removed the batch it gave us and left the
// translator to finish; what we wrote since into its private directory is
// ours to remove.
void tidyAfterCaller(const std::string& statusFile, const char* batchFile)
{
    if (statusFile.empty() || ::access(batchFile, F_OK) == 0)
        return;
    for (const char* suffix : {"", ".started"})
        ::unlink((statusFile + suffix).c_str());
    const auto slash = statusFile.rfind('/');
    if (slash != std::string::npos && slash > 0)
        ::rmdir(statusFile.substr(0, slash).c_str());
}

} // namespace

int main(int argc, char** argv)
{
    platform::guardStandardDescriptors();
    // The terminal may go before the batch ends: output is dropped then.
    platform::ignoreBrokenPipe();
    std::string statusFile;
    std::string directory;
    int i = 1;
    for (; i + 1 < argc && std::strncmp(argv[i], "--", 2) == 0; i += 2) {
        if (std::strcmp(argv[i], "--status-file") == 0)
            statusFile = argv[i + 1];
        else if (std::strcmp(argv[i], "--directory") == 0)
            directory = argv[i + 1];
        else
            return usage();
    }
    if (i + 1 != argc)
        return usage();
    // No announcement, no run: the caller has given up on us and run the
    // batch itself, and a second translator run would do harm.
    if (!statusFile.empty() && !platform::announceConsoleStart(statusFile)) {
        std::fprintf(stderr, "tamsel-cmd: cannot write %s.started; not running %s\n",
                     statusFile.c_str(), argv[i]);
        return 1;
    }
    if (!directory.empty() && ::chdir(directory.c_str()) != 0) {
        std::fprintf(stderr, "tamsel-cmd: cannot change to %s\n", directory.c_str());
        if (!statusFile.empty())
            platform::writeConsoleStatus(statusFile, platform::exitStatus(1));
        return 1;
    }
    platform::BatchHooks hooks;
    if (!statusFile.empty()) {
        // Whoever closes the window at the pause must not turn a good run bad.
        hooks.beforePause = [&statusFile](int errorlevel) {
            platform::writeConsoleStatus(statusFile, errorlevel);
        };
    }
    const int status = platform::runBatchFile(argv[i], hooks);
    if (!statusFile.empty() && !platform::writeConsoleStatus(statusFile, status))
        std::fprintf(stderr, "tamsel-cmd: cannot write %s\n", statusFile.c_str());
    tidyAfterCaller(statusFile, argv[i]);
    return exitCodeOf(status);
}
