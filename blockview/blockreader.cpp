#include "blockreader.h"

#include <QIODevice>

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

// Moves the unfinished line to the front of the buffer and reads behind it.
qint64 fill(QIODevice& device, QByteArray& buffer, qsizetype& begin, qsizetype& end)
{
    if (begin > 0) {
        std::memmove(buffer.data(), buffer.constData() + begin, size_t(end - begin));
        end -= begin;
        begin = 0;
    }
    if (end == buffer.size())
        buffer.resize(buffer.size() * 2); // a line longer than the buffer
    const qint64 got = device.read(buffer.data() + end, buffer.size() - end);
    if (got > 0)
        end += got;
    return got;
}

} // namespace

BlockReader::BlockReader(int headerLines, Progress progress,
                         std::function<void(const QByteArray&)> skipped)
    : headerLines(headerLines), progress(std::move(progress)), skipped(std::move(skipped))
{
}

BlockText BlockReader::read(QIODevice& device, qint64 sizeHint)
{
    text = BlockText();
    hint = sizeHint;
    skippedCount = 0;
    counted = 0;
    // The kept lines are never longer than the file, so one reservation
    // holds them all and the store never moves.
    if (sizeHint > 0)
        text.reserve(sizeHint);

    QByteArray buffer(chunkSize, Qt::Uninitialized);
    qsizetype begin = 0;
    qsizetype end = 0;
    bool atStart = true;
    bool stopped = false;
    while (!stopped) {
        const qint64 got = fill(device, buffer, begin, end);
        const bool done = got <= 0;
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
    if (!stopped && end > begin)
        take(buffer.constData() + begin, end - begin);
    finish();
    return std::move(text);
}

bool BlockReader::takeLines(const char* data, qsizetype& begin, qsizetype end)
{
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

bool BlockReader::take(const char* data, qsizetype size)
{
    if (skippedCount < headerLines) {
        ++skippedCount;
        if (skipped)
            skipped(QByteArray(data, size));
        return true;
    }
    ++counted;
    if (size > 0)
        text.appendLine(data, size);
    if (counted % 1000 != 0 || !progress)
        return true;
    const qint64 characters = QString::fromUtf8(data, size).size();
    qint64 estimate = 0;
    if (qMulOverflow(characters, counted, &estimate))
        estimate = std::numeric_limits<qint64>::max();
    return progress(qMin(estimate, hint));
}

void BlockReader::finish()
{
    for (; skippedCount < headerLines; ++skippedCount)
        if (skipped)
            skipped(QByteArray());
}
