#include "zeb2mtx_report.h"

#include "standin.h"
#include "zebtext.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace zeb2mtxreport
{

namespace
{

constexpr int written = 1;
constexpr int notWritten = 0;

struct Request {
    std::string operand, report;
    int block = 0; // 0: the whole file
};

Request parse(const std::vector<std::string>& args)
{
    Request r;
    r.operand = args.empty() ? std::string() : args[0];
    for (std::size_t i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == "-d")
            r.report = args[++i];
        else if (args[i] == "-b")
            r.block = std::atoi(args[++i].c_str());
    }
    return r;
}

// Exactly as many leading lines as the block's layout gives.
void writeHeader(std::ostream& out, const std::string& file, const std::string& index, int block)
{
    const std::string what =
        block ? "block " + std::to_string(block) + "  " + zebtext::blockName(block) : "";
    const std::string lines[] = {"ZEB2MTX stand-in report", "input: " + file,
                                 "body: " + (index.empty() ? std::string("1") : index), what};
    const int count = zebtext::reportHeaderLines(block);
    for (int i = 0; i < count - 1; ++i)
        out << (i < 4 ? lines[i] : std::string()) << "\n";
    out << std::string(60, '-') << "\n";
}

void writeBlock(std::ostream& out, const zebtext::Body& body, const std::string& file,
                const std::string& index, int block)
{
    writeHeader(out, file, index, block);
    const auto found = body.blocks.find(block);
    if (found == body.blocks.end())
        return;
    for (const std::string& line : found->second)
        out << line << "\n";
}

bool failureAskedFor(int block)
{
    const char* fail = std::getenv("TAMSEL_STANDIN_FAIL_BLOCK");
    return fail && *fail && std::atoi(fail) == block;
}

} // namespace

bool asksForReport(const std::vector<std::string>& args)
{
    // The first argument is the input, whatever it is called.
    return args.size() > 1 && std::find(args.begin() + 1, args.end(), "-d") != args.end();
}

int writeReport(const std::vector<std::string>& args)
{
    const Request r = parse(args);
    std::string file, index, problem;
    zebtext::splitOperand(r.operand, file, index);
    zebtext::Body body;
    if (r.report.empty() || !zebtext::load(file, index, body, problem)) {
        std::fprintf(stderr, "zeb2mtx-standin: no report: %s\n",
                     r.report.empty() ? "no report file named" : problem.c_str());
        return notWritten;
    }
    if ((r.block && zebtext::blockName(r.block).empty()) || failureAskedFor(r.block)) {
        std::fprintf(stderr, "zeb2mtx-standin: cannot extract block %d\n", r.block);
        return notWritten;
    }
    std::ostringstream out;
    for (int block = r.block ? r.block : 1; block <= (r.block ? r.block : 29); ++block) {
        if (!zebtext::blockName(block).empty())
            writeBlock(out, body, file, index, block);
    }
    if (!standin::writeOutput(r.report, out.str())) {
        std::fprintf(stderr, "zeb2mtx-standin: cannot write %s\n", r.report.c_str());
        return notWritten;
    }
    std::printf("zeb2mtx-standin: wrote the report %s\n", r.report.c_str());
    return written;
}

} // namespace zeb2mtxreport
