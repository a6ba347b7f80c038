#pragma once

#include "blocktext.h"

#include <functional>
#include <limits>

class QIODevice;

// Reads a block report as the browser shows it: the leading lines are
// dropped unexamined, lines of length zero are dropped, every other line is
// kept exactly as read. Lines end in a line feed or a carriage return and a
// line feed.
class BlockReader
{
public:
    // Told the progress estimate after every 1000 lines read behind the
    // leading ones (empty lines count); returning false stops the reading
    // and keeps what was read so far.
    using Progress = std::function<bool(qint64 estimate)>;

    // skipped: called with each leading line as it is dropped, also for
    // the ones a short report lacks (with an empty line). A line longer than
    // skippedShown bytes is cut there and ends in "...".
    BlockReader(int headerLines, Progress progress = {},
                std::function<void(const QByteArray&)> skipped = {});

    // Reads to the end of the device, or until the progress callback says
    // stop. The estimate is the length of the line just read times the
    // number of lines read, capped at sizeHint (the file's size); while a
    // line goes on without an end, leading or kept, the bytes read so far
    // are told after every buffer instead, and long lines are asked about
    // at least every askEvery bytes, so that a stop is heard there too.
    BlockText read(QIODevice& device, qint64 sizeHint);

    // The most memory the text may take; the reading stops before it would
    // take more, and truncated() says so.
    void setMemoryLimit(qint64 bytes) { limit = bytes; }
    bool truncated() const { return cut; }
    // What one page may hold: half the memory the system has to spare,
    // within a floor and a ceiling.
    static qint64 pageMemoryLimit();
    static constexpr qint64 pageMemoryFloor = qint64(64) << 20;
    static constexpr qint64 pageMemoryCeiling = qint64(16) << 30;
    static constexpr qsizetype skippedShown = 256;
    static constexpr qint64 askEvery = qint64(4) << 20;

private:
    // Takes the whole lines in data from begin to end and moves begin
    // behind them; false when the reading is to stop.
    bool takeLines(const char* data, qsizetype& begin, qsizetype end);
    // Takes one line without its line end; false stops the reading.
    bool take(const char* data, qsizetype size);
    bool takePart(const char* data, qsizetype& begin, qsizetype end);
    void keepLeadingStart(const char* data, qsizetype size);
    bool ask(qint64 estimate);
    bool store(const char* data, qsizetype size);
    qsizetype room(const char* data, qsizetype size, int cost);
    void finish();

    int headerLines;
    Progress progress;
    std::function<void(const QByteArray&)> skipped;
    // The state of one read().
    BlockText text;
    qint64 hint = 0;
    qint64 skippedCount = 0;
    qint64 counted = 0;
    qint64 limit = std::numeric_limits<qint64>::max();
    bool cut = false;
    bool partial = false;    // the last line kept goes on in the next bytes
    QByteArray leadingStart; // of the leading line being skipped
    qint64 takenSinceAsked = 0;
    bool nulAhead = true;    // a NUL may be in the lines still to take
    qint64 skippedBytes = 0; // a line feed counted for each part too
};
