#include "zebtext.h"

#include "standin.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <sys/stat.h>

namespace zebtext
{

namespace
{

struct BlockInfo {
    int number;
    const char* name;
    int headerLines;
};

const BlockInfo blockTable[] = {
    {1, "Version code", 9},
    {2, "Header", 9},
    {3, "Content Summary", 9},
    {4, "Nodal Coordinates", 9},
    {6, "Global Body Properties", 9},
    {7, "Eigenvalues", 8},
    {8, "Mode Shapes", 9},
    {9, "Nodal Masses", 9},
    {10, "Nodal Inertias", 9},
    {11, "Units", 9},
    {12, "Generalized Stiffness", 9},
    {13, "Generalized Mass", 9},
    {14, "Element Faces", 11},
    {15, "Generalized Damping", 9},
    {16, "Mode Shape Transformation", 11},
    {17, "Interface Nodes", 9},
    {18, "Stress Modes", 9},
    {19, "Invariants 1", 9},
    {20, "Invariants 2", 9},
    {21, "Invariants 3", 9},
    {22, "Invariants 4", 9},
    {23, "Invariants 5", 9},
    {24, "Invariants 7", 9},
    {25, "Invariants 8", 9},
    {26, "Invariants 9", 9},
    {27, "Preloads", 9},
    {28, "Modal Loads", 9},
    {29, "Strain Modes", 9},
};

const BlockInfo* info(int block)
{
    for (const BlockInfo& b : blockTable) {
        if (b.number == block)
            return &b;
    }
    return nullptr;
}

bool startsWith(const std::string& text, const char* prefix)
{
    return text.compare(0, std::char_traits<char>::length(prefix), prefix) == 0;
}

void stripCarriageReturn(std::string& line)
{
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
}

bool loadZeb(std::istream& in, const std::string& first, Body& body)
{
    const std::size_t note = first.find_first_not_of(' ', 7);
    body.note = note == std::string::npos ? std::string() : first.substr(note);
    std::vector<std::string>* current = nullptr;
    std::string line;
    while (std::getline(in, line)) {
        stripCarriageReturn(line);
        if (line == "end")
            break;
        if (startsWith(line, "block ")) {
            current = &body.blocks[std::atoi(line.c_str() + 6)];
            continue;
        }
        if (current)
            current->push_back(line);
    }
    return true;
}

long field(const std::string& line, const char* key)
{
    const std::size_t at = line.find(key);
    return at == std::string::npos
               ? 0
               : std::atol(line.c_str() + at + std::char_traits<char>::length(key));
}

std::string padded(const std::string& text, std::size_t width)
{
    return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

std::string number(double value, std::size_t width)
{
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.6E", value);
    return padded(buf, width);
}

// Blocks made up from a database body's description: coordinates and mode
// shapes in the counts it names, a few lines for every other block. Each
// mode's shapes come under a heading line "Mode <n>", as the translator
// writes them.
void makeBlocks(const std::string& description, Body& body)
{
    const long nodes = std::min(field(description, "nodes="), 100000L);
    const long modes = std::min(field(description, "modes="), 200L);
    for (const BlockInfo& b : blockTable)
        body.blocks[b.number] = {std::string("  ") + b.name + " of " + description};
    auto& coordinates = body.blocks[4];
    auto& shapes = body.blocks[8];
    auto& eigenvalues = body.blocks[7];
    coordinates.clear();
    shapes.clear();
    eigenvalues.clear();
    for (long n = 1; n <= nodes; ++n)
        coordinates.push_back(padded(std::to_string(n), 5) + number(n * 0.01, 18) +
                              number(n % 7 * 0.02, 18) + number(n % 3 * 0.5, 18));
    for (long m = 1; m <= modes; ++m) {
        // Mode, eigenvalue, Hertz, radians, generalized mass and stiffness.
        const double hertz = m * m * 12.5, radians = 2 * M_PI * hertz, mass = 1.0;
        eigenvalues.push_back(padded(std::to_string(m), 5) + number(radians * radians, 18) +
                              number(hertz, 18) + number(radians, 18) + number(mass, 18) +
                              number(radians * radians * mass, 18));
        shapes.push_back("  Mode " + padded(std::to_string(m), 5));
        for (long n = 1; n <= nodes; ++n)
            shapes.push_back(padded(std::to_string(n), 5) + number(m * 1e-3 * n, 18) +
                             number(-1e-4 * n, 18) + number(1e-5 * m, 18) + number(0, 18) +
                             number(1e-6 * n, 18) + number(0, 18));
    }
}

bool loadDatabaseBody(std::istream& in, const std::string& index, Body& body, std::string& problem)
{
    const long wanted = index.empty() ? 1 : std::atol(index.c_str());
    long seen = 0;
    std::string line;
    while (std::getline(in, line)) {
        stripCarriageReturn(line);
        if (!startsWith(line, "BODY ") || ++seen != wanted)
            continue;
        body.note = "body " + index + " of an HX DB file: " + line.substr(5);
        makeBlocks(line.substr(5), body);
        return true;
    }
    problem = "the HX DB file has no body " + index;
    return false;
}

} // namespace

void splitOperand(const std::string& operand, std::string& file, std::string& index)
{
    const std::size_t sep = operand.rfind("::");
    struct stat st {
    };
    // A name that is a file as it stands keeps its colons.
    if (sep == std::string::npos || ::stat(operand.c_str(), &st) == 0) {
        file = operand;
        index.clear();
        return;
    }
    file = operand.substr(0, sep);
    index = operand.substr(sep + 2);
}

bool load(const std::string& file, const std::string& index, Body& body, std::string& problem)
{
    std::ifstream in(file, std::ios::binary);
    std::string first;
    if (!in || !std::getline(in, first)) {
        problem = "cannot read " + file;
        return false;
    }
    stripCarriageReturn(first);
    if (startsWith(first, "ZEB "))
        return loadZeb(in, first, body);
    if (first == "HXDB 1")
        return loadDatabaseBody(in, index, body, problem);
    problem = file + " is not a ZEB file";
    return false;
}

bool save(const std::string& file, const Body& body)
{
    std::ostringstream out;
    out << "ZEB 1.0  " << body.note << "\n";
    for (const auto& [number, lines] : body.blocks) {
        out << "block " << number << "  " << blockName(number) << "\n";
        for (const std::string& line : lines)
            out << line << "\n";
    }
    out << "end\n";
    return standin::writeOutput(file, out.str());
}

std::string blockName(int block)
{
    const BlockInfo* b = info(block);
    return b ? b->name : "";
}

int reportHeaderLines(int block)
{
    const BlockInfo* b = info(block);
    return b ? b->headerLines : 0;
}

} // namespace zebtext
