#pragma once

#include <string>
#include <vector>

// The report mode of the ZEB2MTX stand-in: "OPERAND -d FILE [-b N]" writes
// the report of block N, or of the whole file, into FILE.
namespace zeb2mtxreport
{

bool asksForReport(const std::vector<std::string>& args);

// The exit status follows the translator's report convention: non-zero when
// the report was written, 0 when it could not be.
int writeReport(const std::vector<std::string>& args);

} // namespace zeb2mtxreport
