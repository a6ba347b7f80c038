#include "standin.h"

#include "platform/files.h"

#include <cstdio>
#include <cstdlib>
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
    std::ofstream out(log, std::ios::app | std::ios::binary);
    out << "program\t" << escaped(program) << "\n";
    for (const auto& a : args)
        out << "arg\t" << escaped(a) << "\n";
    if (const char* options = std::getenv("OKT_ZEBWRITE_OPTIONS"))
        out << "options\t" << escaped(options) << "\n";
    else
        out << "options-unset\n";
    out << "cwd\t" << escaped(currentDirectory()) << "\n\n";
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
