// Stand-in for the QRT2ZEB translator. It records its command line and says
// what it was asked to do; it does not translate anything.
#include "standin.h"

#include <cstdio>

int main(int argc, char** argv)
{
    const std::vector<std::string> args(argv + 1, argv + argc);
    standin::logRun("qrt2zeb-standin", args);
    std::string joined;
    for (const auto& a : args)
        joined += " [" + a + "]";
    std::printf("qrt2zeb-standin: asked to translate%s with options [%s]\n", joined.c_str(),
                standin::writeOptions().c_str());
    return standin::requestedStatus();
}
