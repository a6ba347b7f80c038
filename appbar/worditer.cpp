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

// The expression engine checks the subject as UTF-16 from where a search
// starts to its end, and finds nothing at all when that holds a lone surrogate,
// so searching the whole text costs its length every time. Instead search
// growing pieces of it, copied with surrogates as U+FFFD, which then need no
// check: the classes are sets of single ASCII characters, so a piece gives the
// same indices, and a search costs about what it passes over.
QString piece(const QString& text, qsizetype at, qsizetype size)
{
    QString copy = text.mid(at, size);
    for (QChar& c : copy)
        if (c.isSurrogate())
            c = QChar::ReplacementCharacter;
    return copy;
}

int indexOfClass(const QRegularExpression& rx, const QString& text, int from)
{
    // An invalid expression matches nothing; asking Qt would also print a warning.
    if (!rx.isValid() || from < 0)
        return -1;
    for (qsizetype at = from, size = 32; at < text.size(); at += size, size *= 2) {
        const QRegularExpressionMatch m =
            rx.match(piece(text, at, size), 0, QRegularExpression::NormalMatch,
                     QRegularExpression::DontCheckSubjectStringMatchOption);
        if (m.hasMatch())
            return int(at + m.capturedStart());
    }
    return -1;
}

// The last match at or before `from`.
int lastIndexOfClass(const QRegularExpression& rx, const QString& text, int from)
{
    if (!rx.isValid() || from < 0 || from >= text.size())
        return -1;
    for (qsizetype end = from + 1, size = 32; end > 0; end -= size, size *= 2) {
        const qsizetype at = qMax(end - size, qsizetype(0));
        const QString part = piece(text, at, end - at);
        const qsizetype i = part.lastIndexOf(rx, part.size() - 1);
        if (i >= 0)
            return int(at + i);
    }
    return -1;
}

} // namespace

// Empty text keeps the values below: no word anywhere (-1), length 0, and the
// delimiter with its class as setDelim() would leave them.
wordIter::wordIter(const QString& source, char delimiter)
    : pos(-1), first(-1), last(-1), length(0), delim(delimiter), rx(wordClass(delimiter)),
      valid(false)
{
    if (source.isEmpty())
        return;
    text = source;
    init(delimiter);
}

wordIter::wordIter(const wordIter& other) = default;

wordIter::~wordIter() = default;

wordIter& wordIter::operator=(const wordIter& other) = default;

void wordIter::init(char delimiter)
{
    valid = true;
    text = text.simplified();
    length = size_t(text.size());
    setDelim(delimiter);
    pos = first;
}

void wordIter::setDelim(char delimiter)
{
    delim = delimiter;
    rx = QRegularExpression(wordClass(delimiter));
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
