#pragma once

#include <cstddef>
#include <string>

namespace platform
{

// The longest "NAME=value" entry for NAME that a started program can still
// be given beside the rest of the environment: longer ones make every later
// start fail (Linux: 32 pages less the NUL, and all of it within ARG_MAX).
std::size_t environmentEntryLimit(const std::string& name);

// Sets one variable of the process environment from "NAME=value", as
// _putenv does: the value is kept byte for byte, an empty value removes the
// variable. Children started later inherit the change. False, with the
// environment as it was, when the entry has no "=" or an empty name, is
// longer than environmentEntryLimit(), or the system refuses.
bool putEnv(const std::string& entry);

} // namespace platform
