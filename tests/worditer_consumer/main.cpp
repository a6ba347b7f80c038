// Uses the installed word iterator the way another program would, and calls
// every operation, so that one the library does not export breaks the link.
#include <worditer.h>

#include <cstdio>

struct Rebuilt : wordIter {
    explicit Rebuilt(const QString& words) : wordIter(QString(), ';')
    {
        text = words;
        init(',');
        setDelim(' ');
        refresh();
        calcFirst();
        calcLast();
        toLast();
        toFirst();
    }
};

int main()
{
    wordIter it = Rebuilt(QStringLiteral("  load  $(file).dat   run(2) "));
    it = wordIter(it);
    for (bool more = it.isValid(); more; more = ++it)
        std::printf("%s%s\n", qPrintable(it.current()), it.atLast() ? " (last)" : "");
    return it.count() == 3 && !it.isValid() && it.atFirst() ? 0 : 1;
}
