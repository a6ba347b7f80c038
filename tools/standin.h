#pragma once

// Shared by the translator stand-ins: they record what they were given, so
// that tests and the curious can see exactly what a real translator would
// have received.

#include <string>
#include <vector>

namespace standin
{

// Appends one record to the file named by TAMSEL_STANDIN_LOG, if set:
//   program<TAB>NAME, one arg<TAB>VALUE per argument, options<TAB>VALUE or
//   options-unset, cwd<TAB>DIR, and an empty line.
// Tabs, line feeds and backslashes in values are written as \t, \n and \\.
void logRun(const std::string& program, const std::vector<std::string>& args);

// The exit status asked for through TAMSEL_STANDIN_STATUS (0 when unset).
int requestedStatus();

// Whether the file can be opened for reading.
bool readable(const std::string& path);

// The value of OKT_ZEBWRITE_OPTIONS, or "(unset)".
std::string writeOptions();

// Writes an output file the way Tamsel writes its own: a new file beside it
// renamed over the name, so that a link planted there is replaced, never
// written through. False, with the reason on standard error, otherwise.
bool writeOutput(const std::string& path, const std::string& bytes);

} // namespace standin
