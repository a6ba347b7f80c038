#pragma once

#include <cstdio>
#include <cstdlib>

// Stops the run at a broken rule, so that libFuzzer keeps the input.
inline void require(bool ok, const char* what)
{
    if (!ok) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}
