#pragma once

#include <string>

namespace platform
{

// Sets one variable of the process environment from "NAME=value", as
// _putenv does: the value is kept byte for byte, an empty value removes the
// variable. Children started later inherit the change. False when the entry
// has no "=" or an empty name, or the system refuses.
bool putEnv(const std::string& entry);

} // namespace platform
