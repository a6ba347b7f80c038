#include "blocktext.h"

#include <algorithm>
#include <cstring>

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
    bytes.reserve(size);
}

void BlockText::appendLine(const char* data, qsizetype size)
{
    bytes.append(data, size);
    ends.push_back(bytes.size());
    if (longest < 0 || size > lineView(longest).size())
        longest = lineCount() - 1;
    if (!offsets.empty())
        offsets.clear();
}

void BlockText::prependLine(QByteArrayView line)
{
    // In place, with no more room than it needs: this comes when memory is
    // short (QByteArray::prepend would allocate anew, with room to spare).
    const qsizetype old = bytes.size();
    if (bytes.capacity() < old + line.size())
        bytes.reserve(old + line.size());
    if (ends.capacity() == ends.size())
        ends.reserve(ends.size() + 1);
    bytes.resize(old + line.size());
    std::memmove(bytes.data() + line.size(), bytes.constData(), size_t(old));
    std::memcpy(bytes.data(), line.data(), size_t(line.size()));
    for (qint64& end : ends)
        end += line.size();
    ends.insert(ends.begin(), line.size());
    if (longest >= 0 && line.size() <= lineView(longest + 1).size())
        ++longest;
    else
        longest = 0;
    offsets.clear();
}

qint64 BlockText::memoryUse() const
{
    return bytes.capacity() + qint64(ends.capacity() * sizeof(qint64));
}

qint64 BlockText::memoryUseAfter(qsizetype lineBytes) const
{
    const qint64 needed = qint64(bytes.size()) + lineBytes;
    const qint64 store = needed <= bytes.capacity() ? bytes.capacity() : 2 * needed;
    const qint64 lines =
        ends.size() < ends.capacity() ? qint64(ends.capacity()) : 2 * qint64(ends.size()) + 1;
    return store + lines * qint64(sizeof(qint64));
}

qsizetype BlockText::lineCount() const
{
    return qsizetype(ends.size());
}

qsizetype BlockText::byteCount() const
{
    return bytes.size();
}

QByteArrayView BlockText::lineView(qsizetype line) const
{
    const qint64 start = line > 0 ? ends[size_t(line) - 1] : 0;
    return QByteArrayView(bytes.constData() + start, ends[size_t(line)] - start);
}

QByteArray BlockText::lineBytes(qsizetype line) const
{
    return lineView(line).toByteArray();
}

QString BlockText::line(qsizetype line) const
{
    return QString::fromUtf8(lineView(line));
}

QString BlockText::toString() const
{
    QString text;
    text.reserve(bytes.size() + lineCount());
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
    const QByteArrayView view = lineView(line);
    // Invalid bytes decode to U+FFFD, so only decoding tells the length.
    return isAscii(view) ? view.size() : QString::fromUtf8(view).size();
}

void BlockText::makeOffsets() const
{
    offsets.resize(ends.size() + 1);
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
