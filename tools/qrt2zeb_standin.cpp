// Stand-in for the QRT2ZEB translator. It records its command line, checks
// that its one argument names a readable QRT file, and writes a small text
// ZEB file named after it into the current directory, recording the write
// options it took from OKT_ZEBWRITE_OPTIONS.
#include "standin.h"

#include "platform/files.h"

#include <cstdio>
#include <filesystem>
#include <sstream>

namespace
{

// "D:/runs/beam.out" -> "beam": no directory, no last extension.
std::string baseName(const std::string& path)
{
    const auto slash = path.find_last_of("/\\");
    std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    const auto dot = name.rfind('.');
    if (dot != std::string::npos && dot > 0)
        name.erase(dot);
    return name;
}

// The blank-separated words of the options; a parenthesised group such as
// "coarsen(0.15, 15, 1)" stays one word.
std::vector<std::string> optionWords(const std::string& options)
{
    std::vector<std::string> words;
    std::string word;
    int depth = 0;
    for (const char c : options) {
        if (c == ' ' && depth == 0) {
            if (!word.empty())
                words.push_back(word);
            word.clear();
            continue;
        }
        depth += c == '(' ? 1 : c == ')' && depth > 0 ? -1 : 0;
        word += c;
    }
    if (!word.empty())
        words.push_back(word);
    return words;
}

bool readableFile(const std::string& path)
{
    std::error_code error;
    return !std::filesystem::is_directory(path, error) && standin::readable(path);
}

// Laid out like the sample ZEB files, so that the other tools can read it.
bool writeZeb(const std::string& zebName, const std::string& input)
{
    std::ostringstream out;
    const std::string options = standin::writeOptions();
    out << "ZEB 1.0  flexible body: " << baseName(input) << ", written by qrt2zeb-standin\n";
    out << "options " << options << "\n";
    for (const auto& word : optionWords(options))
        out << "applied " << word << "\n";
    out << "block 1  header\n  title         \"" << baseName(input) << "\"\n  source        "
        << input << "\n";
    out << "block 2  eigenvalues (Hz)\n  1    0.0\n";
    out << "block 4  nodal coordinates (m)\n   1   0.0  0.0  0.0\n";
    out << "end\n";
    return standin::writeOutput(zebName, out.str());
}

} // namespace

int main(int argc, char** argv)
{
    platform::guardStandardDescriptors();
    const std::vector<std::string> args(argv + 1, argv + argc);
    standin::logRun("qrt2zeb-standin", args);
    if (args.size() != 1 || !readableFile(args[0])) {
        std::fprintf(stderr,
                     "qrt2zeb-standin: expected one readable QRT file, got %zu argument(s)%s%s\n",
                     args.size(), args.empty() ? "" : ": ", args.empty() ? "" : args[0].c_str());
        return 2;
    }
    const std::string zebName = baseName(args[0]) + ".zeb";
    if (!writeZeb(zebName, args[0])) {
        std::fprintf(stderr, "qrt2zeb-standin: cannot write %s\n", zebName.c_str());
        return 3;
    }
    std::printf("qrt2zeb-standin: translated [%s] to [%s] with options [%s]\n", args[0].c_str(),
                zebName.c_str(), standin::writeOptions().c_str());
    return standin::requestedStatus();
}
