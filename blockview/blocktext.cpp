#include "blocktext.h"

#include <QStringDecoder>

#include <algorithm>
#include <cstring>

namespace
{

constexpr qsizetype chunkBytes = 4096;

// Each chunk decodes on its own, so that every slice of a long line agrees
// with its length; a chunk starts at a character's start where it can.
qsizetype chunkStart(QByteArrayView bytes, qsizetype at)
{
    for (int step = 0; step < 3 && at < bytes.size() && BlockText::isContinuation(bytes[at]);
         ++step)
        ++at;
    return at;
}

// UTF-8 never gives more UTF-16 units than bytes, replacements included.
qsizetype decodeChunk(QByteArrayView bytes, QChar* out)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    return decoder.appendToBuffer(out, bytes) - out;
}

} // namespace

BlockText BlockText::fromString(const QString& text)
{
    BlockText result;
    const QByteArray utf8 = text.toUtf8();
    result.reserve(utf8.size());
    qsizetype start = 0;
    while (start < utf8.size()) {
        qsizetype end = utf8.indexOf('\n', start);
        if (end < 0)
            end = utf8.size();
        result.appendLine(utf8.constData() + start, end - start);
        start = end + 1;
    }
    return result;
}

void BlockText::reserve(qsizetype size)
{
    bytes.reserve(size_t(std::max<qsizetype>(size, 0)));
    // A line end for every eight bytes: more than a report has, and what
    // is not filled costs nothing.
    ends.reserve(size_t(std::max<qsizetype>(size, 0)));
}

void BlockText::appendLine(const char* data, qsizetype size)
{
    bytes.append(data, size_t(size));
    const qint64 end = qint64(bytes.size());
    ends.append(&end, sizeof end);
    if (longest < 0 || size > lineView(longest).size())
        longest = lineCount() - 1;
    if (!offsets.empty())
        offsets.clear();
    if (size > longLineBytes)
        indexLastLine();
}

void BlockText::appendToLastLine(const char* data, qsizetype size)
{
    if (lineCount() == 0) {
        appendLine(data, size);
        return;
    }
    bytes.append(data, size_t(size));
    endsData()[lineCount() - 1] = qint64(bytes.size());
    if (lineView(lineCount() - 1).size() > lineView(longest).size())
        longest = lineCount() - 1;
    offsets.clear();
    if (isLong(lineCount() - 1))
        indexLastLine();
}

void BlockText::prependLine(QByteArrayView line)
{
    // In place: this comes when memory is short, and the store grows by
    // moving its pages rather than copying them.
    const size_t old = bytes.size();
    const qsizetype count = lineCount();
    bytes.resize(old + size_t(line.size()));
    std::memmove(bytes.data() + line.size(), bytes.data(), old);
    std::memcpy(bytes.data(), line.data(), size_t(line.size()));
    ends.resize(ends.size() + sizeof(qint64));
    qint64* end = endsData();
    for (qsizetype i = count; i > 0; --i)
        end[i] = end[i - 1] + line.size();
    end[0] = line.size();
    if (longest >= 0 && line.size() <= lineView(longest + 1).size())
        ++longest;
    else
        longest = 0;
    offsets.clear();
    std::unordered_map<qsizetype, LongLine> moved;
    for (auto& [index, entry] : longLines)
        moved.emplace(index + 1, std::move(entry));
    longLines = std::move(moved);
}

qint64 BlockText::memoryUse() const
{
    // Room the store has not yet touched costs no memory.
    return qint64(bytes.footprint()) + qint64(ends.footprint());
}

qint64 BlockText::memoryUseAfter(qsizetype lineBytes) const
{
    // The store grows by moving its pages, never by copying them.
    return qint64(bytes.footprint()) + lineBytes + qint64(ends.footprint() + sizeof(qint64));
}

qsizetype BlockText::lineCount() const
{
    return qsizetype(ends.size() / sizeof(qint64));
}

qsizetype BlockText::byteCount() const
{
    return qsizetype(bytes.size());
}

QByteArrayView BlockText::lineView(qsizetype line) const
{
    const qint64* end = endsData();
    const qint64 start = line > 0 ? end[line - 1] : 0;
    return QByteArrayView(bytes.data() + start, end[line] - start);
}

QByteArray BlockText::lineBytes(qsizetype line) const
{
    return lineView(line).toByteArray();
}

QString BlockText::line(qsizetype line) const
{
    if (isLong(line))
        return lineSlice(line, 0, lineLength(line));
    return QString::fromUtf8(lineView(line));
}

QString BlockText::toString() const
{
    QString text;
    text.reserve(byteCount() + lineCount());
    for (qsizetype i = 0; i < lineCount(); ++i) {
        text += line(i);
        text += QLatin1Char('\n');
    }
    return text;
}

bool BlockText::isAscii(QByteArrayView view)
{
    const char* p = view.data();
    qsizetype n = view.size();
    // Eight bytes at a time: any high bit means a byte above 0x7f.
    quint64 any = 0;
    for (; n >= 8; p += 8, n -= 8) {
        quint64 word;
        std::memcpy(&word, p, 8);
        any |= word;
    }
    for (; n > 0; ++p, --n)
        any |= quint8(*p);
    return (any & 0x8080808080808080ull) == 0;
}

qsizetype BlockText::lineLength(qsizetype line) const
{
    if (isLong(line))
        return longLineFacts(line).length;
    const QByteArrayView view = lineView(line);
    // Invalid bytes decode to U+FFFD, so only decoding tells the length.
    return isAscii(view) ? view.size() : QString::fromUtf8(view).size();
}

void BlockText::makeOffsets() const
{
    offsets.resize(size_t(lineCount()) + 1);
    qint64 offset = 0;
    for (qsizetype i = 0; i < lineCount(); ++i) {
        offsets[size_t(i)] = offset;
        offset += lineLength(i) + 1;
    }
    offsets.back() = offset;
}

qsizetype BlockText::characterOffset(qsizetype line) const
{
    if (offsets.empty())
        makeOffsets();
    return offsets[size_t(std::clamp<qsizetype>(line, 0, lineCount()))];
}

qsizetype BlockText::lineAtOffset(qsizetype offset) const
{
    if (offsets.empty())
        makeOffsets();
    // The last line starting at or before the offset.
    const auto it = std::upper_bound(offsets.begin(), offsets.end(), qint64(offset));
    return std::clamp<qsizetype>(it - offsets.begin() - 1, 0, lineCount());
}

bool BlockText::isAsciiLine(qsizetype line) const
{
    return isLong(line) ? longLineFacts(line).ascii : isAscii(lineView(line));
}

BlockText::LineFacts BlockText::longLineFacts(qsizetype line) const
{
    const LongLine& index = longLines.at(line);
    const QByteArrayView rest = lineView(line).sliced(index.indexedBytes);
    if (isAscii(rest))
        return {index.ascii, qsizetype(index.indexedColumns + rest.size())};
    QString buffer(rest.size() + 4, Qt::Uninitialized);
    return {false, qsizetype(index.indexedColumns + decodeChunk(rest, buffer.data()))};
}

// Indexes the chunks of the last line whose ends are known: a chunk's end
// may move up to three bytes on to a character's start.
void BlockText::indexLastLine()
{
    const QByteArrayView stored = lineView(lineCount() - 1);
    LongLine& index = longLines[lineCount() - 1];
    QString buffer;
    while (index.indexedBytes + chunkBytes + 3 <= stored.size()) {
        const qsizetype at = index.indexedBytes;
        const qsizetype next = chunkStart(stored, at + chunkBytes);
        const QByteArrayView chunk = stored.sliced(at, next - at);
        index.chunkBytes.push_back(at);
        index.chunkColumns.push_back(index.indexedColumns);
        if (isAscii(chunk)) {
            index.indexedColumns += chunk.size();
        } else {
            if (buffer.isEmpty())
                buffer = QString(chunkBytes + 4, Qt::Uninitialized);
            index.ascii = false;
            index.indexedColumns += decodeChunk(chunk, buffer.data());
        }
        index.indexedBytes = next;
    }
}

QString BlockText::lineSlice(qsizetype line, qsizetype column, qsizetype length) const
{
    const QByteArrayView stored = lineView(line);
    if (!isLong(line))
        return QString::fromUtf8(stored).mid(column, length);
    const LongLine& index = longLines.at(line);
    const LineFacts facts = longLineFacts(line);
    column = std::clamp<qsizetype>(column, 0, facts.length);
    length = std::clamp<qsizetype>(length, 0, facts.length - column);
    if (facts.ascii)
        return QString::fromLatin1(stored.sliced(column, length));
    // From the chunk holding the column, chunk by chunk as the index
    // counted, the rest behind the last chunk as one more.
    const auto& starts = index.chunkColumns;
    const auto pieceStart = [&](size_t piece) {
        return piece < starts.size()    ? index.chunkBytes[piece]
               : piece == starts.size() ? index.indexedBytes
                                        : qint64(stored.size());
    };
    size_t chunk =
        size_t(std::upper_bound(starts.begin(), starts.end(), column) - starts.begin()) - 1;
    const qsizetype skip = column - starts[chunk];
    QString decoded(skip + length + chunkBytes + 4, Qt::Uninitialized);
    qsizetype filled = 0;
    for (; filled < skip + length && chunk <= starts.size(); ++chunk) {
        const qint64 from = pieceStart(chunk);
        filled +=
            decodeChunk(stored.sliced(from, pieceStart(chunk + 1) - from), decoded.data() + filled);
    }
    return decoded.mid(skip, length);
}

QString BlockText::lineAround(qsizetype line, qsizetype column, qsizetype& start) const
{
    constexpr qsizetype reach = 2048;
    start = 0;
    if (!isLong(line))
        return this->line(line);
    start = std::max<qsizetype>(0, column - reach);
    return lineSlice(line, start, column + reach - start);
}
