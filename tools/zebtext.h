#pragma once

// The stand-ins' own ZEB format, a plain text that stands for a real ZEB
// file in the demo and the tests:
//
//   ZEB 1.0  <anything>           first line: the format and a note
//   block <number>  <name>        a block begins; its data lines follow
//   <data line>
//   ...
//   end                           optional; nothing after it is read
//
// A body of an HX DB file (the stand-in library's "HXDB 1" text) has no
// blocks of its own; they are made up from its "nodes=" and "modes=".

#include <map>
#include <string>
#include <vector>

namespace zebtext
{

struct Body {
    std::string note;                               // the first line behind "ZEB 1.0"
    std::map<int, std::vector<std::string>> blocks; // data lines by block number
};

// Splits an input operand "FILE::INDEX" at its last "::"; an operand that
// names an existing file whole is all file, with an empty index.
void splitOperand(const std::string& operand, std::string& file, std::string& index);

// Reads a stand-in ZEB file, or body `index` (from 1) of an HX DB file.
// False, with the reason in `problem`, when neither can be read.
bool load(const std::string& file, const std::string& index, Body& body, std::string& problem);

// Writes the body in the format above; false when the file cannot be written.
bool save(const std::string& file, const Body& body);

// The name ZEB2MTX gives a block, "" for a number it does not know.
std::string blockName(int block);

// How many leading lines the report of a block starts with.
int reportHeaderLines(int block);

} // namespace zebtext
