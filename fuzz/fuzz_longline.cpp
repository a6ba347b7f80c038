// libFuzzer target for long lines of a block's text: the input, repeated
// past the length where a line is indexed in pieces, is one line. What must
// hold for any bytes:
// - the line's length and every slice of it agree with the line decoded
//   whole through the same pieces, and with QString::fromUtf8 when the bytes
//   are valid UTF-8;
// - a search finds a piece of the line where it stands or before it, and
//   searching back from the end finds it there or after it.
//
// Input: the first two bytes choose a slice (where, how long), the rest is
// repeated into the line.
#include "blockview/blocktext.h"
#include "blockview/blockviewsearch.h"
#include "require.h"

#include <QStringDecoder>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 3)
        return 0;
    const QByteArray piece(reinterpret_cast<const char*>(data) + 2, qsizetype(size) - 2);
    QByteArray bytes;
    while (bytes.size() <= BlockText::longLineBytes + 4096)
        bytes += piece;
    bytes.replace('\n', ' '); // one line
    BlockText text;
    text.appendLine(bytes.constData(), bytes.size());
    require(text.isLong(0), "the line is long");

    const QString whole = text.line(0);
    require(whole.size() == text.lineLength(0), "length agrees with the line");
    QStringDecoder strict(QStringDecoder::Utf8);
    const QString decoded = strict.decode(bytes);
    if (!strict.hasError())
        require(whole == decoded, "valid UTF-8 decodes as a whole decode does");

    const qsizetype length = whole.size();
    const qsizetype column = qsizetype(data[0]) * length / 256;
    const qsizetype count = 1 + data[1] % 64;
    require(text.lineSlice(0, column, count) == whole.mid(column, count), "a slice agrees");
    require(text.lineSlice(0, length - count, count * 2) == whole.mid(length - count),
            "a slice is clamped to the line");

    const QString needle = whole.mid(column, count);
    if (needle.isEmpty())
        return 0;
    const BlockViewSearch search(text, needle, Qt::CaseSensitive);
    const BlockViewSearch::Hit forward = search.find(0, 0, false);
    require(forward.line == 0 && forward.column <= column, "found forward");
    require(whole.mid(forward.column, needle.size()) == needle, "forward match is the needle");
    const BlockViewSearch::Hit backward = search.find(0, length, true);
    require(backward.line == 0 && backward.column >= column, "found backward");
    require(whole.mid(backward.column, needle.size()) == needle, "backward match is the needle");
    return 0;
}
