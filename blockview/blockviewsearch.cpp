#include "blockviewsearch.h"

#include <algorithm>
#include <array>
#include <limits>

BlockViewSearch::BlockViewSearch(const BlockText& searched, const QString& sought,
                                 Qt::CaseSensitivity sensitivity)
    : text(searched), needle(sought), cs(sensitivity)
{
    // A needle that folds to ASCII ("K" as the Kelvin sign) can match ASCII;
    // any other non-ASCII needle never can.
    const QString key = cs == Qt::CaseSensitive ? needle : needle.toCaseFolded();
    const QByteArray utf8 = key.toUtf8();
    if (BlockText::isAscii(utf8))
        ascii = utf8;
    blankMatters = needle.contains(QLatin1Char(' ')) || needle.contains(QLatin1Char('\t'));
    shownNeedle = QString(needle).replace(QLatin1Char('\t'), QLatin1Char(' '));
    shownAscii = QByteArray(ascii).replace('\t', ' ');
    for (int c = 0; c < 256; ++c) {
        const bool upper = cs == Qt::CaseInsensitive && c >= 'A' && c <= 'Z';
        fold[size_t(c)] = shownFold[size_t(c)] = char(upper ? c + ('a' - 'A') : c);
    }
    shownFold['\t'] = ' ';
}

BlockViewSearch::Hit BlockViewSearch::find(qsizetype line, qsizetype column, bool backward) const
{
    const qsizetype count = text.lineCount();
    if (needle.isEmpty() || count == 0)
        return {};
    // The start line comes twice: first the part ahead, last (after the
    // wrap) the whole line.
    for (qsizetype step = 0; step <= count; ++step) {
        const qsizetype at = backward ? line - step : line + step;
        const qsizetype l = (at % count + count) % count;
        qsizetype from = backward ? std::numeric_limits<qsizetype>::max() : 0;
        if (step == 0)
            from = backward ? column - 1 : column;
        if (from < 0)
            continue;
        const qsizetype found = inLine(l, from, backward);
        if (found >= 0)
            return {l, found, at < 0 || at >= count};
    }
    return {};
}

qsizetype BlockViewSearch::inLine(qsizetype line, qsizetype from, bool backward) const
{
    const QByteArrayView bytes = text.lineView(line);
    const bool shown = blankMatters && text.isLong(line);
    if (text.isAsciiLine(line))
        return ascii.isEmpty() ? -1 : inAscii(bytes, from, backward, shown);
    if (text.isLong(line))
        return inLongLine(line, from, backward, shown);
    const QString decoded = QString::fromUtf8(bytes);
    if (!backward)
        return decoded.indexOf(needle, from, cs);
    return lastIn(decoded, needle, from);
}

// A long line is decoded a window at a time; windows overlap by the
// needle's length, so that a match across their edge is found.
qsizetype BlockViewSearch::inLongLine(qsizetype line, qsizetype from, bool backward,
                                      bool shown) const
{
    constexpr qsizetype window = qsizetype(1) << 20;
    const qsizetype length = text.lineLength(line);
    const qsizetype overlap = needle.size() - 1;
    const QString& key = shown ? shownNeedle : needle;
    const auto slice = [&](qsizetype start, qsizetype size) {
        QString part = text.lineSlice(line, start, size);
        return shown ? part.replace(QLatin1Char('\t'), QLatin1Char(' ')) : part;
    };
    if (!backward) {
        for (qsizetype start = std::max<qsizetype>(0, from); start < length; start += window) {
            const qsizetype found = slice(start, window + overlap).indexOf(key, 0, cs);
            if (found >= 0)
                return start + found;
        }
        return -1;
    }
    // from: the last start allowed.
    for (qsizetype end = std::min(from, length); end >= 0; end -= window) {
        const qsizetype start = std::max<qsizetype>(0, end - window + 1);
        const qsizetype found = lastIn(slice(start, end - start + 1 + overlap), key, end - start);
        if (found >= 0 && start + found <= end)
            return start + found;
        if (start == 0)
            break;
    }
    return -1;
}

// The last match starting at or before from. A negative start would count
// from the end, and one where the needle does not fit whole would match the
// string's terminating NUL.
qsizetype BlockViewSearch::lastIn(const QString& decoded, const QString& key, qsizetype from) const
{
    const qsizetype start = std::min(from, decoded.size() - key.size());
    return start < 0 ? -1 : decoded.lastIndexOf(key, start, cs);
}

qsizetype BlockViewSearch::inAscii(QByteArrayView line, qsizetype from, bool backward,
                                   bool shown) const
{
    const QByteArray& key = shown ? shownAscii : ascii;
    const qsizetype last = line.size() - key.size();
    if (last < 0)
        return -1;
    if (cs == Qt::CaseSensitive && !shown)
        return backward ? line.lastIndexOf(key, std::min(from, last)) : line.indexOf(key, from);
    const Fold& table = shown ? shownFold : fold;
    const char* data = line.data();
    if (backward) {
        for (qsizetype i = std::min(from, last); i >= 0; --i)
            if (asciiMatchAt(data + i, key, table))
                return i;
        return -1;
    }
    for (qsizetype i = from; i <= last; ++i)
        if (asciiMatchAt(data + i, key, table))
            return i;
    return -1;
}

bool BlockViewSearch::asciiMatchAt(const char* at, const QByteArray& key, const Fold& table)
{
    if (table[quint8(at[0])] != key[0])
        return false;
    for (qsizetype i = 1; i < key.size(); ++i)
        if (table[quint8(at[i])] != key[i])
            return false;
    return true;
}
