#include "worditer.h"

namespace
{

// Which characters may begin a word, for each delimiter: the same set less the
// delimiter itself. "[]" is not a valid expression and matches nothing.
QString wordClass(char delim)
{
    switch (delim) {
    case ' ':
        return QStringLiteral(R"([!,\.=:\*()\-\[\]/\${}a-zA-Z0-9_])");
    case '(':
        return QStringLiteral(R"([ !,\.=\*:)\-\[\]/\${}a-zA-Z0-9_])");
    case ')':
        return QStringLiteral(R"([ !,\.=\*:(\-\[\]/\${}a-zA-Z0-9_])");
    case ',':
        return QStringLiteral(R"([ !=\.:\*()\-\[\]/\${}a-zA-Z0-9_])");
    case '.':
        return QStringLiteral(R"([ !,=:()\*\-\[\]/\${}a-zA-Z0-9_])");
    case '/':
        return QStringLiteral(R"([ !,=:.(\*)\-\[\]\${}a-zA-Z0-9_])");
    case ':':
        return QStringLiteral(R"([ !,=\.\*()\-\[\]/\${}a-zA-Z0-9_])");
    case '=':
        return QStringLiteral(R"([ !,\.:\*()\-\[\]/\${}a-zA-Z0-9_])");
    case '[':
        return QStringLiteral(R"([ !,\.=\*:()\-\]/\${}a-zA-Z0-9_])");
    case ']':
        return QStringLiteral(R"([ !,\.:\*()\-\[/\${}a-zA-Z0-9_])");
    default:
        return QStringLiteral("[]");
    }
}

bool hasSurrogate(const QString& text)
{
    for (QChar c : text)
        if (c.isSurrogate())
            return true;
    return false;
}

// The expression engine checks the text as UTF-16 and finds nothing at all in
// text with a lone surrogate, or from an index inside a pair. The classes hold
// ASCII characters only, so searching a copy with the surrogates blanked out to
// U+FFFD gives the same indices and the answer a character-wise search would.
QString withoutSurrogates(QString text)
{
    for (QChar& c : text)
        if (c.isSurrogate())
            c = QChar::ReplacementCharacter;
    return text;
}

int indexOfClass(const QRegularExpression& rx, const QString& text, int from)
{
    // An invalid expression matches nothing; asking Qt would also print a warning.
    if (!rx.isValid() || from < 0 || from >= text.size())
        return -1;
    qsizetype i = text.indexOf(rx, from);
    if (i < 0 && hasSurrogate(text))
        i = withoutSurrogates(text).indexOf(rx, from);
    return int(i);
}

// The last match at or before `from`.
int lastIndexOfClass(const QRegularExpression& rx, const QString& text, int from)
{
    // A negative start would count from the end.
    if (!rx.isValid() || from < 0 || from >= text.size())
        return -1;
    qsizetype i = text.lastIndexOf(rx, from);
    if (i < 0 && hasSurrogate(text))
        i = withoutSurrogates(text).lastIndexOf(rx, from);
    return int(i);
}

} // namespace

// Empty text keeps the values below: no word anywhere (-1), length 0, and the
// delimiter with its class as setDelim() would leave them.
wordIter::wordIter(const QString& text, char delim)
    : pos(-1), first(-1), last(-1), length(0), delim(delim), rx(wordClass(delim)), valid(false)
{
    if (text.isEmpty())
        return;
    this->text = text;
    init(delim);
}

wordIter::wordIter(const wordIter& other) = default;

wordIter::~wordIter() = default;

wordIter& wordIter::operator=(const wordIter& other) = default;

void wordIter::init(char delim)
{
    valid = true;
    text = text.simplified();
    length = size_t(text.size());
    setDelim(delim);
    pos = first;
}

void wordIter::setDelim(char delim)
{
    this->delim = delim;
    rx = QRegularExpression(wordClass(delim));
    refresh();
}

void wordIter::refresh()
{
    if (length == 0) {
        valid = false;
        return;
    }
    calcFirst();
    calcLast();
}

void wordIter::calcFirst()
{
    const int n = int(length);
    int i = 0;
    while (i < n && text.at(i) == QLatin1Char(delim))
        ++i;
    if (i == n) {
        valid = false;
        return;
    }
    first = indexOfClass(rx, text, i);
}

void wordIter::calcLast()
{
    int i = int(length) - 1;
    while (i > 0 && text.at(i) == QLatin1Char(delim))
        --i;
    int j = lastIndexOfClass(rx, text, i);
    if (j < 0) {
        valid = false;
        return;
    }
    while (j > 0 && text.at(j) != QLatin1Char(delim))
        --j;
    // One behind the delimiter, which need not be a word character.
    last = j + 1;
    if (first == 0 && last == 1)
        last = 0;
}

bool wordIter::operator++()
{
    const int n = int(length);
    int i = pos < 0 ? 0 : pos;
    while (i < n && text.at(i) != QLatin1Char(delim))
        ++i;
    if (i >= n) {
        valid = false;
        return false;
    }
    pos = indexOfClass(rx, text, i);
    return pos >= 0;
}

QString wordIter::current() const
{
    if (!valid)
        return QString();
    const int n = int(length);
    if (pos < 0 || pos >= n)
        return QString();
    QString word;
    for (int i = pos; i < n && text.at(i) != QLatin1Char(delim); ++i)
        word += QChar::fromLatin1(text.at(i).toLatin1());
    return word;
}

size_t wordIter::count() const
{
    const int n = int(length);
    size_t result = 1;
    int p = indexOfClass(rx, text, 0);
    if (p < 0 || p >= n)
        return 1;
    while (p < n) {
        if (text.at(p) == QLatin1Char(delim)) {
            p = indexOfClass(rx, text, p);
            if (p < 0)
                break;
            ++result;
        } else {
            ++p;
        }
    }
    return result;
}

bool wordIter::isValid() const
{
    return valid;
}

bool wordIter::atFirst() const
{
    return pos == first || !valid;
}

bool wordIter::atLast() const
{
    return pos == last || !valid;
}

void wordIter::toFirst()
{
    pos = first;
}

void wordIter::toLast()
{
    pos = last;
}
