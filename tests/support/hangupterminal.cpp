// A terminal window that its user closes at the final pause: runs its
// command on a pseudo terminal, and when the pause prompt shows, closes the
// terminal, which hangs up on everything still running in it.
//   hangup-terminal PROGRAM ARGS...
#include <csignal>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    int master = -1;
    const pid_t child = ::forkpty(&master, nullptr, nullptr, nullptr);
    if (child < 0)
        return 1;
    if (child == 0) {
        std::signal(SIGHUP, SIG_DFL); // as in a fresh terminal, whatever started us
        ::execvp(argv[1], argv + 1);
        ::_exit(127);
    }
    std::string seen;
    char buf[256];
    ssize_t n = 0;
    while (seen.find("Press any key") == std::string::npos &&
           (n = ::read(master, buf, sizeof buf)) > 0)
        seen.append(buf, static_cast<std::size_t>(n));
    ::close(master);
    int status = 0;
    ::waitpid(child, &status, 0);
    return 0; // as terminals do, whatever their child did
}
