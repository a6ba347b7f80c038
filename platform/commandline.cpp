#include "platform/commandline.h"

namespace platform
{

namespace
{

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

// The program name: quotes toggle, backslashes are literal.
std::size_t takeProgram(const std::string& line, std::size_t i, std::string& out)
{
    bool quoted = false;
    for (; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '"')
            quoted = !quoted;
        else if (isBlank(c) && !quoted)
            break;
        else
            out += c;
    }
    return i;
}

// One argument after the program: backslashes count only before a quote.
std::size_t takeArgument(const std::string& line, std::size_t i, std::string& out)
{
    bool quoted = false;
    while (i < line.size()) {
        const char c = line[i];
        if (isBlank(c) && !quoted)
            break;
        if (c == '\\') {
            std::size_t n = 0;
            while (i < line.size() && line[i] == '\\') {
                ++n;
                ++i;
            }
            if (i < line.size() && line[i] == '"') {
                out.append(n / 2, '\\');
                if (n % 2 == 1) {
                    out += '"';
                    ++i;
                }
            } else {
                out.append(n, '\\');
            }
            continue;
        }
        if (c == '"') {
            if (quoted && i + 1 < line.size() && line[i + 1] == '"') {
                out += '"';
                i += 2;
                continue;
            }
            quoted = !quoted;
            ++i;
            continue;
        }
        out += c;
        ++i;
    }
    return i;
}

} // namespace

std::vector<std::string> splitCommandLine(const std::string& line)
{
    std::vector<std::string> args;
    std::size_t i = 0;
    while (i < line.size() && isBlank(line[i]))
        ++i;
    if (i == line.size())
        return args;
    std::string program;
    i = takeProgram(line, i, program);
    args.push_back(program);
    for (;;) {
        while (i < line.size() && isBlank(line[i]))
            ++i;
        if (i == line.size())
            break;
        std::string arg;
        i = takeArgument(line, i, arg);
        args.push_back(arg);
    }
    return args;
}

bool quoteArgument(const std::string& arg, std::string& quoted)
{
    if (arg.find_first_of(std::string("\0\r\n", 3)) != std::string::npos)
        return false;
    std::string out = "\"";
    std::size_t backslashes = 0;
    for (const char c : arg) {
        if (c == '\\') {
            ++backslashes;
            continue;
        }
        // Backslashes count only before a quote: there they are doubled.
        out.append(c == '"' ? 2 * backslashes + 1 : backslashes, '\\');
        backslashes = 0;
        out += c;
    }
    out.append(2 * backslashes, '\\'); // before the closing quote
    out += '"';
    quoted = out;
    return true;
}

bool quoteProgram(const std::string& program, std::string& quoted)
{
    if (program.empty() || program.find_first_of(std::string("\"\r\n\0", 4)) != std::string::npos)
        return false;
    // Quoted only when it must be, so that ordinary lines stay as they were.
    const bool blank = program.find_first_of(" \t") != std::string::npos;
    quoted = blank ? '"' + program + '"' : program;
    return true;
}

bool isBatchFileName(const std::string& program)
{
    if (program.size() < 4)
        return false;
    std::string ext = program.substr(program.size() - 4);
    for (auto& c : ext)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return ext == ".bat" || ext == ".cmd";
}

} // namespace platform
