#include "blockreader.h"

#include "platform/memory.h"

#include <QFile>
#include <QIODevice>

#include <algorithm>

#include <cstring>
#include <limits>
#include <utility>

namespace
{

// Large enough that a read costs little per line, small beside the text.
constexpr qsizetype chunkSize = qsizetype(1) << 20;

bool startsWithBom(const char* data, qsizetype size)
{
    return size >= 3 && std::memcmp(data, "\xEF\xBB\xBF", 3) == 0;
}

// What fill() says of a line that fills the whole buffer.
constexpr qint64 lineTooLong = -2;

// Moves the unfinished line to the front of the buffer and reads behind it.
qint64 fill(QIODevice& device, QByteArray& buffer, qsizetype& begin, qsizetype& end)
{
    if (begin > 0) {
        std::memmove(buffer.data(), buffer.constData() + begin, size_t(end - begin));
        end -= begin;
        begin = 0;
    }
    if (end == buffer.size())
        return lineTooLong;
    const qint64 got = device.read(buffer.data() + end, buffer.size() - end);
    if (got > 0)
        end += got;
    return got;
}

// A NUL would cut the text short for whatever reads it as a C string, such
// as a screen reader: it is shown as U+FFFD.
QByteArray withoutNul(const char* data, qsizetype size)
{
    QByteArray line;
    line.reserve(size + 16);
    for (qsizetype i = 0; i < size; ++i)
        data[i] ? line.append(data[i]) : line.append("\xEF\xBF\xBD", 3);
    return line;
}

// A leading line as the diagnostic shows it: its start, cut before a
// UTF-8 sequence, for a line longer than that.
QByteArray shortened(QByteArray line)
{
    const qsizetype most = BlockReader::skippedShown;
    if (line.size() <= most)
        return line;
    qsizetype cut = most;
    while (cut > most - 3 && (line[cut] & 0xC0) == 0x80)
        --cut;
    line.truncate(cut);
    return line + "...";
}

} // namespace

BlockReader::BlockReader(int leading, Progress told, std::function<void(const QByteArray&)> dropped)
    : headerLines(leading), progress(std::move(told)), skipped(std::move(dropped))
{
}

BlockText BlockReader::read(QIODevice& device, qint64 sizeHint)
{
    text = BlockText();
    hint = sizeHint;
    skippedCount = 0;
    counted = 0;
    cut = false;
    partial = false;
    leadingStart.clear();
    takenSinceAsked = 0;
    skippedBytes = 0;

    QByteArray buffer(chunkSize, Qt::Uninitialized);
    qsizetype begin = 0;
    qsizetype end = 0;
    qint64 bytesRead = 0;
    bool atStart = true;
    bool stopped = false;
    while (!stopped) {
        // A line longer than the buffer is taken, or skipped, a buffer at a
        // time, so that it is held only once and a stop is heard within it.
        const qint64 got = fill(device, buffer, begin, end);
        if (got == lineTooLong) {
            stopped = !takePart(buffer.constData(), begin, end);
            continue;
        }
        bytesRead += std::max<qint64>(got, 0);
        const bool done = got <= 0;
        // A line without an end in a whole buffer: ask about stopping here.
        if (!done && end - begin == buffer.size() && progress && !ask(qMin(bytesRead, hint)))
            break;
        if (atStart && (end >= 3 || done)) {
            atStart = false;
            if (startsWithBom(buffer.constData(), end))
                begin = 3;
        }
        if (!atStart)
            stopped = !takeLines(buffer.constData(), begin, end);
        if (done)
            break;
    }
    if (!stopped && end > begin) {
        // The last line's carriage return goes too, as for every other line.
        nulAhead = true;
        const bool cr = buffer.at(end - 1) == '\r';
        take(buffer.constData() + begin, end - begin - (cr ? 1 : 0));
    }
    finish();
    return std::move(text);
}

bool BlockReader::takeLines(const char* data, qsizetype& begin, qsizetype end)
{
    // One look for a NUL a buffer rather than one a line.
    nulAhead = std::memchr(data + begin, '\0', size_t(end - begin)) != nullptr;
    while (const void* feed = std::memchr(data + begin, '\n', size_t(end - begin))) {
        const qsizetype length = static_cast<const char*>(feed) - (data + begin);
        const bool crlf = length > 0 && data[begin + length - 1] == '\r';
        const bool more = take(data + begin, crlf ? length - 1 : length);
        begin += length + 1;
        if (!more)
            return false;
    }
    return true;
}

// The start of a line that fills the whole buffer; a carriage return at its
// end waits, since a line feed may follow it.
bool BlockReader::takePart(const char* data, qsizetype& begin, qsizetype end)
{
    const qsizetype size = end - begin - (data[end - 1] == '\r' ? 1 : 0);
    if (skippedCount < headerLines) {
        keepLeadingStart(data + begin, size);
        begin += size;
        return true;
    }
    nulAhead = true;
    const bool more = store(data + begin, size);
    partial = partial || size > 0;
    begin += size;
    return more;
}

bool BlockReader::take(const char* data, qsizetype size)
{
    if (skippedCount < headerLines) {
        keepLeadingStart(data, size);
        ++skippedCount;
        if (skipped)
            skipped(shortened(leadingStart));
        leadingStart.clear();
        return true;
    }
    ++counted;
    if (!store(data, size))
        return false;
    partial = false;
    takenSinceAsked += size + 1;
    if ((counted % 1000 != 0 && takenSinceAsked < askEvery) || !progress)
        return true;
    const qint64 characters = QString::fromUtf8(data, size).size();
    qint64 estimate = 0;
    if (qMulOverflow(characters, counted, &estimate))
        estimate = std::numeric_limits<qint64>::max();
    return ask(qMin(estimate, hint));
}

bool BlockReader::ask(qint64 estimate)
{
    takenSinceAsked = 0;
    return progress(estimate);
}

// Only what the diagnostic shows, and one byte more to tell that it is cut.
void BlockReader::keepLeadingStart(const char* data, qsizetype size)
{
    skippedBytes += size + 1;
    const qsizetype wanted = skippedShown + 1 - leadingStart.size();
    if (wanted > 0)
        leadingStart.append(data, std::min(size, wanted));
}

// Keeps a line, or the next part of one; false when memory ran out.
bool BlockReader::store(const char* data, qsizetype size)
{
    if (size == 0)
        return true;
    // The kept lines are never longer than the rest of the file, so one
    // reservation holds them all and the store never moves; a little more
    // leaves room for a note in front.
    if (text.lineCount() == 0 && hint > 0)
        text.reserve(qsizetype(std::clamp<qint64>(hint - skippedBytes, 0, limit / 2) + 256));
    const bool nul = nulAhead && std::memchr(data, '\0', size_t(size));
    const qsizetype kept = room(data, size, nul ? 3 : 1);
    const QByteArray shown = nul ? withoutNul(data, kept) : QByteArray();
    const char* bytes = nul ? shown.constData() : data;
    const qsizetype length = nul ? shown.size() : kept;
    if (length > 0 && partial)
        text.appendToLastLine(bytes, length);
    else if (length > 0)
        text.appendLine(bytes, length);
    return !cut;
}

// How much of a line of size bytes, each taking up to cost bytes, fits
// under the limit: all of it, or the longest start of it that does (halving
// down to it, then back to a character's start), and then the reading is
// cut.
qsizetype BlockReader::room(const char* data, qsizetype size, int cost)
{
    if (text.memoryUseAfter(size * cost) <= limit)
        return size;
    cut = true;
    qsizetype kept = size;
    while (kept > 0 && text.memoryUseAfter(kept * cost) > limit)
        kept /= 2;
    while (kept > 0 && (data[kept] & 0xC0) == 0x80) // inside a UTF-8 sequence
        --kept;
    return kept;
}

qint64 BlockReader::pageMemoryLimit()
{
    const qint64 available = platform::availableMemory();
    return std::clamp(available / 2, pageMemoryFloor, pageMemoryCeiling);
}

void BlockReader::finish()
{
    // The start of a leading line the report ends in, then the ones it lacks.
    for (; skippedCount < headerLines; ++skippedCount) {
        if (skipped)
            skipped(shortened(leadingStart));
        leadingStart.clear();
    }
}
