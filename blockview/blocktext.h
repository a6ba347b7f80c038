#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include "platform/largebuffer.h"

#include <unordered_map>
#include <vector>

// The text of one block page, held compactly: the lines' bytes (UTF-8, no
// line ends) back to back, and where each line starts. A million-line
// report costs its size in bytes plus a few bytes a line.
class BlockText
{
public:
    BlockText() = default;
    // A short text, split at its line feeds; a final line feed ends the last
    // line rather than starting an empty one.
    static BlockText fromString(const QString& text);

    // Room for this many bytes, taken from the system only as it is filled.
    void reserve(qsizetype bytes);
    // One line, without its line end.
    void appendLine(const char* data, qsizetype size);
    // More of the last line, read in parts when it is longer than a buffer.
    void appendToLastLine(const char* data, qsizetype size);
    // A line put before all others (a note about the text); moves them all.
    void prependLine(QByteArrayView line);
    // What the text holds in memory, its bytes and its index together, now
    // and once a line of so many bytes is appended (counting the growth of
    // a full store).
    qint64 memoryUse() const;
    qint64 memoryUseAfter(qsizetype lineBytes) const;

    qsizetype lineCount() const;
    qsizetype byteCount() const;
    QByteArray lineBytes(qsizetype line) const;
    QString line(qsizetype line) const;
    // Every line followed by a line feed.
    QString toString() const;

    // The stored bytes of a line, valid until the text changes.
    QByteArrayView lineView(qsizetype line) const;
    // The line with the most bytes, kept while appending; -1 when empty.
    qsizetype longestLine() const { return longest; }
    // A line's length in UTF-16 code units, as line() gives it.
    qsizetype lineLength(qsizetype line) const;

    // Character offsets into toString(), where each line counts its length
    // plus one for its line feed. The table behind them is made on first
    // use (only assistive technology needs it), so these are not safe to
    // call from two threads at once.
    qsizetype characterOffset(qsizetype line) const;
    qsizetype characterCount() const { return characterOffset(lineCount()); }
    // The line holding a character offset; lineCount() at the very end.
    qsizetype lineAtOffset(qsizetype offset) const;

    static bool isAscii(QByteArrayView bytes);
    // A byte inside a UTF-8 sequence, not at its start.
    static bool isContinuation(char c) { return (quint8(c) & 0xC0) == 0x80; }

    // A line longer than this is never decoded whole: its length, its
    // slices and its plainness come from an index of its 4 KiB chunks,
    // each decoded on its own. The index grows as the line is appended, so
    // no question about a line ever waits on a pass over all of it, and a
    // text once built changes no more: a search may read it from another
    // thread (all but the character offsets, made on first use).
    static constexpr qsizetype longLineBytes = 16 * 1024;
    bool isLong(qsizetype line) const { return lineView(line).size() > longLineBytes; }
    // Whether a line is plain ASCII (remembered for long lines).
    bool isAsciiLine(qsizetype line) const;
    // UTF-16 units [column, column + length) of a line, decoding only the
    // bytes they come from; clamped to the line.
    QString lineSlice(qsizetype line, qsizetype column, qsizetype length) const;
    // A stretch of a line around a column, enough for a word or sentence
    // around it: the whole line when it is short. start: its first column.
    QString lineAround(qsizetype line, qsizetype column, qsizetype& start) const;

private:
    void makeOffsets() const;

    // The chunks of a long line as far as their ends are known; the rest,
    // shorter than a chunk and three bytes, is decoded when asked about.
    struct LongLine {
        bool ascii = true; // of the indexed chunks
        qint64 indexedBytes = 0;
        qint64 indexedColumns = 0;
        // Where each chunk starts, in bytes and in UTF-16 units.
        std::vector<qint64> chunkBytes;
        std::vector<qint64> chunkColumns;
    };
    struct LineFacts {
        bool ascii;
        qsizetype length;
    };
    LineFacts longLineFacts(qsizetype line) const;
    void indexLastLine();

    platform::LargeBuffer bytes;
    // One past each line's last byte, a qint64 a line (the mapping is
    // page-aligned).
    platform::LargeBuffer ends;
    qint64* endsData() { return reinterpret_cast<qint64*>(ends.data()); }
    const qint64* endsData() const { return reinterpret_cast<const qint64*>(ends.data()); }
    qsizetype longest = -1;
    mutable std::vector<qint64> offsets; // lineCount() + 1 entries once made
    std::unordered_map<qsizetype, LongLine> longLines;
};
