#include "standin.h"

#include "platform/files.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <unistd.h>

namespace standin
{

namespace
{

std::string escaped(const std::string& value)
{
    std::string out;
    for (const char c : value) {
        if (c == '\\')
            out += "\\\\";
        else if (c == '\t')
            out += "\\t";
        else if (c == '\n')
            out += "\\n";
        else
            out += c;
    }
    return out;
}

std::string currentDirectory()
{
    char buf[4096];
    return ::getcwd(buf, sizeof buf) ? buf : "?";
}

} // namespace

void logRun(const std::string& program, const std::vector<std::string>& args)
{
    const char* log = std::getenv("TAMSEL_STANDIN_LOG");
    if (!log || !*log)
        return;
    std::string record = "program\t" + escaped(program) + "\n";
    for (const auto& a : args)
        record += "arg\t" + escaped(a) + "\n";
    if (const char* options = std::getenv("OKT_ZEBWRITE_OPTIONS"))
        record += "options\t" + escaped(options) + "\n";
    else
        record += "options-unset\n";
    record += "cwd\t" + escaped(currentDirectory()) + "\n\n";
    // Never through a link planted at the name, as with every file written.
    const int fd = ::open(log, O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (fd < 0) {
        std::fprintf(stderr, "cannot write the log %s: %s\n", log, std::strerror(errno));
        return;
    }
    if (::write(fd, record.data(), record.size()) != static_cast<ssize_t>(record.size()))
        std::fprintf(stderr, "cannot write the log %s: %s\n", log, std::strerror(errno));
    ::close(fd);
}

int requestedStatus()
{
    const char* status = std::getenv("TAMSEL_STANDIN_STATUS");
    return status && *status ? std::atoi(status) : 0;
}

bool readable(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return static_cast<bool>(in);
}

std::string writeOptions()
{
    const char* options = std::getenv("OKT_ZEBWRITE_OPTIONS");
    return options ? options : "(unset)";
}

bool writeOutput(const std::string& path, const std::string& bytes)
{
    std::string error;
    if (platform::replaceFile(path, bytes, error))
        return true;
    std::fprintf(stderr, "cannot write %s: %s\n", path.c_str(), error.c_str());
    return false;
}

} // namespace standin
