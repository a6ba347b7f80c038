#include "blockviewsearch.h"

#include <algorithm>
#include <limits>

namespace
{

// Short lines are searched this many bytes at a time, or a little more.
constexpr qsizetype runBytes = 256 * 1024;

// The first character start at or after at: decoding pieces cut there gives
// what decoding them together gives.
qsizetype characterStart(QByteArrayView bytes, qsizetype at)
{
    at = std::min(at, bytes.size());
    while (at < bytes.size() && BlockText::isContinuation(bytes[at]))
        ++at;
    return at;
}

} // namespace

struct BlockViewSearch::Window {
    QByteArrayView bytes; // the window and, after it, room for a match across its end
    qsizetype length = 0; // of the window alone, in UTF-16 units
    bool ascii = false;   // all of bytes is plain ASCII
    QString decoded;      // else bytes decoded (tabs as blanks when a blank matters)
};

BlockViewSearch::BlockViewSearch(const BlockText& searched, const QString& sought,
                                 Qt::CaseSensitivity sensitivity, Progress* watcher)
    : text(searched), needle(sought), cs(sensitivity), progress(watcher)
{
    // A needle that folds to ASCII ("K" as the Kelvin sign) can match ASCII;
    // any other non-ASCII needle never can.
    const QString key = cs == Qt::CaseSensitive ? needle : needle.toCaseFolded();
    const QByteArray utf8 = key.toUtf8();
    if (BlockText::isAscii(utf8)) {
        ascii = BlockAsciiFinder(utf8, cs == Qt::CaseInsensitive, false);
        shownAscii = BlockAsciiFinder(utf8, cs == Qt::CaseInsensitive, true);
    }
    blankMatters = needle.contains(QLatin1Char(' ')) || needle.contains(QLatin1Char('\t'));
    shownNeedle = QString(needle).replace(QLatin1Char('\t'), QLatin1Char(' '));
}

BlockViewSearch::Hit BlockViewSearch::find(qsizetype line, qsizetype column, bool backward) const
{
    const qsizetype count = text.lineCount();
    if (needle.isEmpty() || count == 0)
        return {};
    // The start line comes twice: first the part ahead, last (after the
    // wrap) the whole line.
    const qsizetype from = backward ? column - 1 : column;
    const qsizetype found = from >= 0 ? inLine(line, from, backward) : -1;
    if (found >= 0)
        return {line, found, false};
    const qsizetype step = backward ? -1 : 1;
    const Hit ahead = inLines(line + step, backward ? 0 : count - 1, backward);
    if (ahead.line >= 0)
        return ahead;
    Hit wrapped = inLines(backward ? count - 1 : 0, line, backward);
    wrapped.wrapped = wrapped.line >= 0;
    return stopped() ? Hit{} : wrapped;
}

BlockViewSearch::Hit BlockViewSearch::inLines(qsizetype first, qsizetype last, bool backward) const
{
    const qsizetype step = backward ? -1 : 1;
    for (qsizetype line = first; backward ? line >= last : line <= last;) {
        if (stopped())
            return {};
        if (text.isLong(line)) {
            const qsizetype found =
                inLine(line, backward ? std::numeric_limits<qsizetype>::max() : 0, backward);
            if (found >= 0)
                return {line, found};
            line += step;
            continue;
        }
        const Run run = runFrom(line, last, backward);
        const Hit hit = inRun(run, backward);
        if (hit.line >= 0)
            return hit;
        line = backward ? run.first - 1 : run.last + 1;
    }
    return {};
}

const char* BlockViewSearch::endOf(qsizetype line) const
{
    const QByteArrayView bytes = text.lineView(line);
    return bytes.data() + bytes.size();
}

// Lines are stored back to back, so a run of them is one stretch of bytes:
// from the line on, as many whole lines as fit in a run's bytes, at least one.
BlockViewSearch::Run BlockViewSearch::runFrom(qsizetype line, qsizetype last, bool backward) const
{
    Run run{line, line, {}};
    // The bounds of the run's other end; the line alone always fits.
    qsizetype low = std::min(line, last), high = std::max(line, last);
    while (low < high) {
        const qsizetype middle = backward ? low + (high - low) / 2 : low + (high - low + 1) / 2;
        const bool fits = backward ? endOf(line) - startOf(middle) <= runBytes
                                   : endOf(middle) - startOf(line) <= runBytes;
        if (backward && fits)
            high = middle;
        else if (backward)
            low = middle + 1;
        else if (fits)
            low = middle;
        else
            high = middle - 1;
    }
    (backward ? run.first : run.last) = low;
    run.bytes = QByteArrayView(startOf(run.first), endOf(run.last) - startOf(run.first));
    return run;
}

// The line of the run holding a byte.
qsizetype BlockViewSearch::lineAt(const Run& run, const char* at) const
{
    qsizetype low = run.first, high = run.last;
    while (low < high) {
        const qsizetype middle = low + (high - low + 1) / 2;
        if (startOf(middle) <= at)
            low = middle;
        else
            high = middle - 1;
    }
    return low;
}

// A match found in the run's bytes may run over a line's end; where a blank
// matters, it was sought as shown in a long line, a tab as a blank.
bool BlockViewSearch::matchesInRun(const Run& run, qsizetype at, qsizetype& line) const
{
    const char* found = run.bytes.data() + at;
    line = lineAt(run, found);
    if (found + ascii.size() > endOf(line))
        return false;
    return !blankMatters || text.isLong(line) ||
           ascii.indexIn(QByteArrayView(found, ascii.size()), 0) == 0;
}

BlockViewSearch::Hit BlockViewSearch::inRun(const Run& run, bool backward) const
{
    advance(run.bytes.size());
    if (!BlockText::isAscii(run.bytes)) {
        for (qsizetype i = 0; i <= run.last - run.first; ++i) {
            const qsizetype line = backward ? run.last - i : run.first + i;
            const qsizetype found =
                inLine(line, backward ? std::numeric_limits<qsizetype>::max() : 0, backward);
            if (found >= 0)
                return {line, found};
        }
        return {};
    }
    const BlockAsciiFinder& finder = blankMatters ? shownAscii : ascii;
    for (qsizetype from = backward ? run.bytes.size() : 0;;) {
        const qsizetype at =
            backward ? finder.lastIndexIn(run.bytes, from) : finder.indexIn(run.bytes, from);
        qsizetype line = 0;
        if (at < 0)
            return {};
        if (matchesInRun(run, at, line))
            return {line, run.bytes.data() + at - startOf(line)};
        from = backward ? at - 1 : at + 1;
    }
}

qsizetype BlockViewSearch::inLine(qsizetype line, qsizetype from, bool backward) const
{
    const QByteArrayView bytes = text.lineView(line);
    if (text.isLong(line))
        return inLongLine(line, from, backward);
    if (BlockText::isAscii(bytes))
        return backward ? ascii.lastIndexIn(bytes, from) : ascii.indexIn(bytes, from);
    const QString decoded = QString::fromUtf8(bytes);
    if (!backward)
        return decoded.indexOf(needle, from, cs);
    return lastIn(decoded, needle, from);
}

// Windows end at a character's start, so that decoded one by one they give
// the line as decoded whole. A match may start in a window and end in the
// next: a window is searched with enough of the next for a needle, each
// UTF-16 unit of it at most three bytes.
BlockViewSearch::Window BlockViewSearch::window(QByteArrayView line, qsizetype start,
                                                qsizetype end) const
{
    Window result;
    const qsizetype reach = characterStart(line, end + 3 * (needle.size() - 1));
    result.bytes = line.sliced(start, reach - start);
    result.ascii = BlockText::isAscii(result.bytes);
    if (result.ascii) {
        result.length = end - start;
        return result;
    }
    result.decoded = QString::fromUtf8(line.sliced(start, end - start));
    result.length = result.decoded.size();
    result.decoded += QString::fromUtf8(line.sliced(end, reach - end));
    if (blankMatters)
        result.decoded.replace(QLatin1Char('\t'), QLatin1Char(' '));
    return result;
}

// from: a column of the window; a match found must start in the window.
qsizetype BlockViewSearch::inWindow(const Window& w, qsizetype from, bool backward) const
{
    qsizetype found = -1;
    if (w.ascii && backward)
        found = shownAscii.lastIndexIn(w.bytes, from);
    else if (w.ascii)
        found = shownAscii.indexIn(w.bytes, from);
    else if (backward)
        found = lastIn(w.decoded, shownNeedle, from);
    else
        found = w.decoded.indexOf(shownNeedle, from, cs);
    return found < w.length ? found : -1;
}

qsizetype BlockViewSearch::inLongLine(qsizetype line, qsizetype from, bool backward) const
{
    const QByteArrayView bytes = text.lineView(line);
    if (!backward) {
        qsizetype column = 0; // of the window's start
        for (qsizetype start = 0; start < bytes.size() && !stopped();) {
            const qsizetype end = characterStart(bytes, start + windowBytes);
            const Window w = window(bytes, start, end);
            advance(end - start);
            const qsizetype found = column + w.length > from
                                        ? inWindow(w, std::max<qsizetype>(0, from - column), false)
                                        : -1;
            if (found >= 0)
                return column + found;
            column += w.length;
            start = end;
        }
        return -1;
    }
    qsizetype column = text.lineLength(line); // of the window's end
    for (qsizetype end = bytes.size(); end > 0 && !stopped();) {
        qsizetype start = characterStart(bytes, std::max<qsizetype>(0, end - windowBytes));
        if (start >= end) // a run of stray continuation bytes
            start = std::max<qsizetype>(0, end - windowBytes);
        const Window w = window(bytes, start, end);
        advance(end - start);
        column -= w.length;
        const qsizetype found =
            column <= from ? inWindow(w, std::min(from - column, w.length - 1), true) : -1;
        if (found >= 0)
            return column + found;
        end = start;
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

bool BlockViewSearch::stopped() const
{
    return progress && progress->stop.load(std::memory_order_relaxed);
}

void BlockViewSearch::advance(qsizetype bytes) const
{
    if (progress)
        progress->bytes.fetch_add(bytes, std::memory_order_relaxed);
}
