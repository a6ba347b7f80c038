// Times construction, count() and a full ++ walk of wordIter on texts of
// growing length, for plain text and for text with one lone surrogate near its
// end (which the expression engine refuses to search). Both should grow
// linearly with the length.
//
// Built optimised in a folder of its own (the release preset's has the
// benchmarks off), from a fresh clone; it writes no file:
//     scripts/install-deps build
//     cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON
//     cmake --build build-bench --target bench_worditer
//     QT_QPA_PLATFORM=offscreen build-bench/bin/bench_worditer [LENGTH...]
// Default 10000 100000 400000.
#include "worditer.h"

#include <QElapsedTimer>
#include <QRandomGenerator>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace
{

// Blank-separated words of 1 to 10 letters, digits and a few other characters.
QString makeText(qsizetype length, bool loneSurrogate)
{
    static const char chars[] = "abcdefghijklmnopqrstuvwxyz0123456789_.#$()";
    QRandomGenerator random(1);
    QString text;
    text.reserve(length);
    while (text.size() < length) {
        if (!text.isEmpty())
            text += QLatin1Char(' ');
        for (int n = random.bounded(1, 11); n > 0; --n)
            text += QLatin1Char(chars[random.bounded(int(sizeof chars - 1))]);
    }
    text.truncate(length);
    if (loneSurrogate)
        text[length - 2] = QChar(0xdc00);
    return text;
}

double millis(const QElapsedTimer& timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<qsizetype> lengths;
    for (int i = 1; i < argc; ++i)
        lengths.push_back(std::atoll(argv[i]));
    if (lengths.empty())
        lengths = {10000, 100000, 400000};

    std::printf("%-16s %8s %8s %12s %12s %12s\n", "text", "length", "words", "construct ms",
                "count ms", "walk ms");
    for (bool lone : {false, true}) {
        for (qsizetype length : lengths) {
            const QString text = makeText(length, lone);
            QElapsedTimer timer;

            timer.start();
            wordIter it(text, ' ');
            const double construct = millis(timer);

            timer.start();
            const size_t words = it.count();
            const double count = millis(timer);

            timer.start();
            size_t steps = 1;
            while (++it)
                ++steps;
            const double walk = millis(timer);

            std::printf("%-16s %8lld %8zu %12.2f %12.2f %12.2f%s\n",
                        lone ? "lone surrogate" : "plain", static_cast<long long>(length), words,
                        construct, count, walk, steps == words ? "" : "  (walk differs)");
            std::fflush(stdout);
        }
    }
    return 0;
}
