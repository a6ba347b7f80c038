// Stand-in for the ZEB2MTX translator. It records its command line and says
// what it was asked to do; it does not translate anything.
#include "standin.h"

#include <cstdio>

int main(int argc, char** argv)
{
    const std::vector<std::string> args(argv + 1, argv + argc);
    standin::logRun("zeb2mtx-standin", args);
    std::string joined;
    for (const auto& a : args)
        joined += " [" + a + "]";
    std::printf("zeb2mtx-standin: asked to translate with arguments%s\n", joined.c_str());
    return standin::requestedStatus();
}
