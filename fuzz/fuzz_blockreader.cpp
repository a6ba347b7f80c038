// libFuzzer target for BlockReader and the BlockText it fills, on any bytes.
// What must hold for any report:
// - the kept lines are the report's lines after the leading ones, split
//   here the simple way: at each LF, less one CR before it, a UTF-8 BOM at
//   the very start dropped, a last line without LF kept as it is, and empty
//   lines left out; so no kept line holds a LF and none is empty;
// - the skip callback sees each leading line, an empty one for each the
//   report lacks; one longer than skippedShown bytes as its start (cut at
//   most 3 bytes earlier, before a UTF-8 sequence) and "...";
// - every progress estimate lies between 0 and the size hint;
// - the text's character offsets agree with its lines and toString().
//
// Input: the first byte is the number of leading lines (its low four bits),
// the rest the report, read through a QBuffer.
#include "blockview/blockreader.h"
#include "require.h"

#include <QBuffer>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace
{

// Every line of the report, empty ones included.
QByteArrayList linesOf(QByteArray report)
{
    if (report.startsWith("\xEF\xBB\xBF"))
        report.remove(0, 3);
    QByteArrayList lines = report.split('\n');
    for (QByteArray& line : lines) // the last line's CR goes too
        if (line.endsWith('\r'))
            line.chop(1);
    if (lines.last().isEmpty()) // nothing behind the last LF
        lines.removeLast();
    return lines;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const int headerLines = data[0] & 15;
    const QByteArray report(reinterpret_cast<const char*>(data) + 1, qsizetype(size) - 1);

    QByteArrayList skipped;
    const auto progress = [&](qint64 estimate) {
        require(0 <= estimate && estimate <= report.size(), "estimate out of range");
        return true;
    };
    BlockReader reader(headerLines, progress, [&](const QByteArray& line) { skipped << line; });
    QBuffer device;
    device.setData(report);
    require(device.open(QIODevice::ReadOnly), "cannot open the buffer");
    const BlockText text = reader.read(device, report.size());

    const QByteArrayList lines = linesOf(report);
    QByteArrayList kept;
    for (qsizetype i = headerLines; i < lines.size(); ++i) {
        QByteArray shown; // a NUL shows as U+FFFD
        for (const char c : lines[i])
            c ? shown.append(c) : shown.append("\xEF\xBF\xBD", 3);
        if (!shown.isEmpty())
            kept << shown;
    }
    QByteArrayList leading = lines.mid(0, headerLines);
    while (leading.size() < headerLines)
        leading << QByteArray();
    require(skipped.size() == leading.size(), "leading line count differs");
    for (qsizetype i = 0; i < leading.size(); ++i) {
        const QByteArray& seen = skipped[i];
        const bool cut = leading[i].size() > BlockReader::skippedShown;
        require(cut ? seen.endsWith("...") && seen.size() - 3 > BlockReader::skippedShown - 4 &&
                          leading[i].startsWith(seen.chopped(3))
                    : seen == leading[i],
                "a leading line differs");
    }

    require(text.lineCount() == kept.size(), "line count differs");
    QString all;
    for (qsizetype i = 0; i < text.lineCount(); ++i) {
        const QByteArray line = text.lineBytes(i);
        require(line == kept[i], "a line differs");
        require(!line.isEmpty() && !line.contains('\n'), "an empty line or a LF kept");
        require(text.characterOffset(i) == all.size(), "character offset differs");
        require(text.lineLength(i) == text.line(i).size(), "line length differs");
        all += text.line(i) + QLatin1Char('\n');
    }
    require(text.characterCount() == all.size() && text.toString() == all, "text differs");
    return 0;
}
