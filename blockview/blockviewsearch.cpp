#include "blockviewsearch.h"

#include <algorithm>
#include <array>
#include <limits>

namespace
{

// ASCII case folding, the only folding a line of plain ASCII needs.
const std::array<char, 256> asciiFold = [] {
    std::array<char, 256> fold{};
    for (int c = 0; c < 256; ++c)
        fold[size_t(c)] = char(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    return fold;
}();

char folded(char c)
{
    return asciiFold[quint8(c)];
}

} // namespace

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
    if (text.isAsciiLine(line))
        return ascii.isEmpty() ? -1 : inAscii(bytes, from, backward);
    if (text.isLong(line))
        return inLongLine(line, from, backward);
    const QString decoded = QString::fromUtf8(bytes);
    if (!backward)
        return decoded.indexOf(needle, from, cs);
    return lastIn(decoded, from);
}

// A long line is decoded a window at a time; windows overlap by the
// needle's length, so that a match across their edge is found.
qsizetype BlockViewSearch::inLongLine(qsizetype line, qsizetype from, bool backward) const
{
    constexpr qsizetype window = qsizetype(1) << 20;
    const qsizetype length = text.lineLength(line);
    const qsizetype overlap = needle.size() - 1;
    if (!backward) {
        for (qsizetype start = std::max<qsizetype>(0, from); start < length; start += window) {
            const qsizetype found =
                text.lineSlice(line, start, window + overlap).indexOf(needle, 0, cs);
            if (found >= 0)
                return start + found;
        }
        return -1;
    }
    // from: the last start allowed.
    for (qsizetype end = std::min(from, length); end >= 0; end -= window) {
        const qsizetype start = std::max<qsizetype>(0, end - window + 1);
        const qsizetype found =
            lastIn(text.lineSlice(line, start, end - start + 1 + overlap), end - start);
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
qsizetype BlockViewSearch::lastIn(const QString& decoded, qsizetype from) const
{
    const qsizetype start = std::min(from, decoded.size() - needle.size());
    return start < 0 ? -1 : decoded.lastIndexOf(needle, start, cs);
}

qsizetype BlockViewSearch::inAscii(QByteArrayView line, qsizetype from, bool backward) const
{
    const qsizetype last = line.size() - ascii.size();
    if (last < 0)
        return -1;
    if (cs == Qt::CaseSensitive)
        return backward ? line.lastIndexOf(ascii, std::min(from, last)) : line.indexOf(ascii, from);
    const char* data = line.data();
    if (backward) {
        for (qsizetype i = std::min(from, last); i >= 0; --i)
            if (asciiMatchAt(data + i))
                return i;
        return -1;
    }
    for (qsizetype i = from; i <= last; ++i)
        if (asciiMatchAt(data + i))
            return i;
    return -1;
}

bool BlockViewSearch::asciiMatchAt(const char* at) const
{
    const char* key = ascii.constData();
    if (folded(at[0]) != key[0])
        return false;
    for (qsizetype i = 1; i < ascii.size(); ++i)
        if (folded(at[i]) != key[i])
            return false;
    return true;
}
