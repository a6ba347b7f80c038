#pragma once

#include "blockasciifinder.h"
#include "blocktext.h"

#include <atomic>
#include <vector>

// Finds a string in a block's text. Plain ASCII (nearly all of a report) is
// searched in its stored bytes, many lines at a time; only the rest is
// decoded, and there Qt's own comparison decides, so a match is what
// QString::indexOf would find in the decoded line. In a long line a tab is
// shown as a blank, and a blank or a tab in the needle matches either.
class BlockViewSearch
{
public:
    struct Hit {
        qsizetype line = -1; // -1: not found
        qsizetype column = 0;
        bool wrapped = false; // found only after passing the end (or start)
    };
    // Lets another thread stop a search and follow it.
    struct Progress {
        std::atomic<bool> stop{false};
        std::atomic<qint64> bytes{0}; // of the text's bytes, searched so far
    };
    // A long line is searched in windows of about this many bytes.
    static constexpr qsizetype windowBytes = 64 * 1024;

    BlockViewSearch(const BlockText& text, const QString& needle, Qt::CaseSensitivity cs,
                    Progress* progress = nullptr);

    // The first match starting at or after the column, or when backward the
    // last one starting before it; the search wraps around once. Not found
    // when stopped.
    Hit find(qsizetype line, qsizetype column, bool backward) const;

private:
    // Lines first to last (downwards when backward), each whole.
    Hit inLines(qsizetype first, qsizetype last, bool backward) const;
    // Lines back to back, searched as one stretch of bytes.
    struct Run {
        qsizetype first = 0; // its lowest line
        qsizetype last = 0;  // and its highest
        QByteArrayView bytes;
    };
    Run runFrom(qsizetype line, qsizetype last, bool backward) const;
    const char* startOf(qsizetype line) const { return text.lineView(line).data(); }
    const char* endOf(qsizetype line) const;
    qsizetype lineAt(const Run& run, const char* at) const;
    bool matchesInRun(const Run& run, qsizetype at, qsizetype& line) const;
    Hit inRun(const Run& run, bool backward) const;
    qsizetype inLine(qsizetype line, qsizetype from, bool backward) const;
    // A long line, a window at a time: windows of ASCII in bytes, the others
    // decoded. from: the first start allowed, or when backward the last.
    struct Window;
    Window window(QByteArrayView line, qsizetype start, qsizetype end) const;
    qsizetype inWindow(const Window& window, qsizetype from, bool backward) const;
    qsizetype inLongLine(qsizetype line, qsizetype from, bool backward) const;
    qsizetype lastIn(const QString& decoded, const QString& key, qsizetype from) const;
    bool stopped() const;
    void advance(qsizetype bytes) const;

    const BlockText& text;
    QString needle;
    QString shownNeedle; // tabs as blanks
    Qt::CaseSensitivity cs;
    bool blankMatters = false; // the needle holds a blank or a tab
    // The needle as ASCII; empty when it cannot match within plain ASCII.
    BlockAsciiFinder ascii;
    BlockAsciiFinder shownAscii; // a blank matching a tab
    Progress* progress;
};
