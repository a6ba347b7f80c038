// libFuzzer target for long lines of a block's text: the input, repeated
// past the length where a line is indexed in pieces, is one line. What must
// hold for any bytes:
// - the line's length and every slice of it agree with the line decoded
//   whole through the same pieces, and with QString::fromUtf8 when the bytes
//   are valid UTF-8; a line appended in parts, as the reader appends one,
//   agrees with one appended whole;
// - a search for a piece of the line, on or back from any place, finds
//   what QString finds in the line decoded whole, tabs as blanks.
//
// Input: the first two bytes choose a slice (where, how long), the rest is
// repeated into the line.
#include "blockview/blocktext.h"
#include "blockview/blockviewsearch.h"
#include "require.h"

#include <QStringDecoder>

#include <algorithm>
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

    BlockText parted;
    const qsizetype part = 1 + qsizetype(data[0]) * 97;
    parted.appendLine(bytes.constData(), std::min(part, bytes.size()));
    for (qsizetype at = part; at < bytes.size(); at += part)
        parted.appendToLastLine(bytes.constData() + at, std::min(part, bytes.size() - at));
    require(parted.lineLength(0) == length && parted.line(0) == whole,
            "a line appended in parts is the line appended whole");
    require(parted.lineSlice(0, column, count) == whole.mid(column, count),
            "a slice of a line appended in parts agrees");

    const QString needle = whole.mid(column, count);
    if (needle.isEmpty())
        return 0;
    // From a place of the input's choosing, as QString finds it in the
    // whole line; a search wraps around the line once. QString's own search
    // back from the end would also match its terminating NUL: it starts
    // where a whole needle fits. A tab shows as a blank in a long line, and
    // is found as one.
    const BlockViewSearch search(text, needle, Qt::CaseSensitive);
    const QString shown = QString(whole).replace('\t', ' ');
    const QString sought = QString(needle).replace('\t', ' ');
    const qsizetype from = qsizetype(data[1]) * length / 256;
    const qsizetype lastFit = length - needle.size();
    qsizetype ahead = shown.indexOf(sought, from);
    qsizetype back = from > 0 ? shown.lastIndexOf(sought, std::min(from - 1, lastFit)) : -1;
    ahead = ahead >= 0 ? ahead : shown.indexOf(sought);
    back = back >= 0 ? back : shown.lastIndexOf(sought, lastFit);
    const BlockViewSearch::Hit forward = search.find(0, from, false);
    require(forward.line == 0 && forward.column == ahead, "found forward where QString finds it");
    const BlockViewSearch::Hit backward = search.find(0, from, true);
    require(backward.line == 0 && backward.column == back, "found back where QString finds it");
    return 0;
}
