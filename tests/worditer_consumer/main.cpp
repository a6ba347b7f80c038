// Uses the installed word iterator the way another program would.
#include <worditer.h>

#include <QStringList>

#include <cstdio>

static QStringList words(const QString& text, char delim)
{
    QStringList result;
    wordIter it(text, delim);
    if (it.isValid())
        do
            result << it.current();
        while (++it);
    return result;
}

int main()
{
    const QStringList got = words(QStringLiteral("  load  $(file).dat   run(2) "), ' ');
    const QStringList want{"load", "$(file).dat", "run(2)"};
    for (const QString& word : got)
        std::printf("%s\n", qPrintable(word));

    wordIter it(QStringLiteral("a,b,,c"), ',');
    wordIter copy(it);
    ++copy;
    it = copy;
    const bool ok = got == want && it.count() == 3 && it.current() == QLatin1String("b") &&
                    words(QStringLiteral("a b"), ';').isEmpty();
    std::printf("%s\n", ok ? "ok" : "MISMATCH");
    return ok ? 0 : 1;
}
