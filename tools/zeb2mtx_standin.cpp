// Stand-in for the ZEB2MTX translator. It records its command line and says
// what it was asked to do. Asked for a matrix file (-o FILE), it checks the
// input and writes FILE as a short text that records the request; it does
// not translate anything. Asked for a report (-d FILE), it writes the report
// of one block, or of the whole file, from a file in the stand-ins' own ZEB
// format (zebtext.h). Asked to optimize (-L -O FILE), it writes the input's
// blocks to FILE in that format, its first line naming the write options.
#include "standin.h"

#include "platform/files.h"
#include "zeb2mtx_report.h"
#include "zebtext.h"

#include <algorithm>
#include <cstdio>
#include <set>
#include <sstream>
#include <sys/stat.h>

namespace
{

const std::set<std::string> flags = {"-o", "+N", "-N", "+M", "-M", "-l", "-m",
                                     "-t", "-f", "-F", "-L", "-O", "-d", "-b"};

struct MatrixRequest {
    std::string input;
    std::string body = "(none)";
    std::string output;
    std::string length = "METER", mass = "KILOGRAM", time = "SECOND", force = "NEWTON";
    std::string nodes = "all", modes = "all";
    bool fastInvariants = false;
    std::string unrecognised;
};

bool isFlag(const std::string& word)
{
    return flags.count(word) > 0;
}

// A list runs up to the next flag; "+N 1 3:10" arrives as three words.
std::string listAfter(const std::vector<std::string>& args, std::size_t& i)
{
    std::string list = args[i][0] == '+' ? "include" : "exclude";
    while (i + 1 < args.size() && !isFlag(args[i + 1]))
        list += " " + args[++i];
    return list;
}

std::string wordAfter(const std::vector<std::string>& args, std::size_t& i)
{
    return i + 1 < args.size() ? args[++i] : std::string();
}

void takeFlag(MatrixRequest& r, const std::vector<std::string>& args, std::size_t& i)
{
    const std::string& a = args[i];
    if (a == "-o")
        r.output = wordAfter(args, i);
    else if (a == "+N" || a == "-N")
        r.nodes = listAfter(args, i);
    else if (a == "+M" || a == "-M")
        r.modes = listAfter(args, i);
    else if (a == "-l")
        r.length = wordAfter(args, i);
    else if (a == "-m")
        r.mass = wordAfter(args, i);
    else if (a == "-t")
        r.time = wordAfter(args, i);
    else if (a == "-f")
        r.force = wordAfter(args, i);
    else if (a == "-F")
        r.fastInvariants = true;
    else
        r.unrecognised += " [" + a + "]";
}

bool readableFile(const std::string& path);

// The input operand is the file, with the body behind the last "::" unless
// the whole operand names a file.
MatrixRequest parse(const std::vector<std::string>& args)
{
    MatrixRequest r;
    const std::string operand = args.empty() ? std::string() : args[0];
    const std::size_t sep = readableFile(operand) ? std::string::npos : operand.rfind("::");
    r.input = operand.substr(0, sep);
    if (sep != std::string::npos)
        r.body = operand.substr(sep + 2);
    for (std::size_t i = 1; i < args.size(); ++i)
        takeFlag(r, args, i);
    return r;
}

bool readableFile(const std::string& path)
{
    struct stat st {
    };
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) && standin::readable(path);
}

bool writeMatrix(const MatrixRequest& r)
{
    std::ostringstream out;
    out << "ZEB2MTX stand-in matrix file\n"
        << "input: " << r.input << "\n"
        << "body: " << r.body << "\n"
        << "units: length " << r.length << ", mass " << r.mass << ", time " << r.time << ", force "
        << r.force << "\n"
        << "nodes: " << r.nodes << "\n"
        << "modes: " << r.modes << "\n"
        << "invariants: " << (r.fastInvariants ? "fast" : "full") << "\n";
    if (!r.unrecognised.empty())
        out << "unrecognised:" << r.unrecognised << "\n";
    return standin::writeOutput(r.output, out.str());
}

int translateToMatrix(const std::vector<std::string>& args)
{
    const MatrixRequest r = parse(args);
    if (!readableFile(r.input)) {
        std::fprintf(stderr, "zeb2mtx-standin: cannot read the input file [%s]\n", r.input.c_str());
        return 2;
    }
    if (r.output.empty() || !writeMatrix(r)) {
        std::fprintf(stderr, "zeb2mtx-standin: cannot write the matrix file [%s]\n",
                     r.output.c_str());
        return 3;
    }
    std::printf("zeb2mtx-standin: wrote %s from %s, body %s\n", r.output.c_str(), r.input.c_str(),
                r.body.c_str());
    return 0;
}

// Options come after the input: an input named "-d" is a file name.
bool asks(const std::vector<std::string>& args, const char* flag)
{
    return args.size() > 1 && std::find(args.begin() + 1, args.end(), flag) != args.end();
}

int optimize(const std::vector<std::string>& args)
{
    std::string file, index, problem, output;
    zebtext::splitOperand(args[0], file, index);
    for (std::size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "-O")
            output = wordAfter(args, i);
    }
    zebtext::Body body;
    if (!readableFile(file) || !zebtext::load(file, index, body, problem)) {
        std::fprintf(stderr, "zeb2mtx-standin: cannot optimize [%s]: %s\n", file.c_str(),
                     problem.empty() ? "not a readable file" : problem.c_str());
        return 2;
    }
    // Read whole before writing, so that the output may be the input.
    body.note = "optimized by the ZEB2MTX stand-in, write options: " + standin::writeOptions();
    if (output.empty() || !zebtext::save(output, body)) {
        std::fprintf(stderr, "zeb2mtx-standin: cannot write the ZEB file [%s]\n", output.c_str());
        return 3;
    }
    std::printf("zeb2mtx-standin: optimized %s into %s\n", args[0].c_str(), output.c_str());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    platform::guardStandardDescriptors();
    const std::vector<std::string> args(argv + 1, argv + argc);
    standin::logRun("zeb2mtx-standin", args);
    std::string joined;
    for (const auto& a : args)
        joined += " [" + a + "]";
    std::printf("zeb2mtx-standin: asked to translate with arguments%s\n", joined.c_str());
    std::fflush(stdout);
    // A failure asked for through the environment comes before any work.
    if (const int status = standin::requestedStatus()) {
        std::fprintf(stderr, "zeb2mtx-standin: failing with status %d as asked\n", status);
        return status;
    }
    if (zeb2mtxreport::asksForReport(args))
        return zeb2mtxreport::writeReport(args);
    if (asks(args, "-O"))
        return optimize(args);
    return asks(args, "-o") ? translateToMatrix(args) : 0;
}
