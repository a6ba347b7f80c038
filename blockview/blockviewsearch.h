#pragma once

#include "blocktext.h"

#include <array>

// Finds a string in a block's text, one line at a time. Lines of plain
// ASCII (nearly all of a report) are searched in their stored bytes; only
// the others are decoded, and there Qt's own comparison decides, so a match
// is what QString::indexOf would find in the decoded line. In a long line a
// tab is shown as a blank, and a blank or a tab in the needle matches either.
class BlockViewSearch
{
public:
    struct Hit {
        qsizetype line = -1; // -1: not found
        qsizetype column = 0;
        bool wrapped = false; // found only after passing the end (or start)
    };

    BlockViewSearch(const BlockText& text, const QString& needle, Qt::CaseSensitivity cs);

    // The first match starting at or after the column, or when backward the
    // last one starting before it; the search wraps around once.
    Hit find(qsizetype line, qsizetype column, bool backward) const;

private:
    // A long line shows a tab as a blank, so there a blank in the needle
    // matches a tab too (shown: search the line as it is shown).
    using Fold = std::array<char, 256>;
    qsizetype inLine(qsizetype line, qsizetype from, bool backward) const;
    qsizetype inLongLine(qsizetype line, qsizetype from, bool backward, bool shown) const;
    qsizetype lastIn(const QString& decoded, const QString& key, qsizetype from) const;
    qsizetype inAscii(QByteArrayView line, qsizetype from, bool backward, bool shown) const;
    static bool asciiMatchAt(const char* at, const QByteArray& key, const Fold& fold);

    const BlockText& text;
    QString needle;
    QString shownNeedle; // tabs as blanks
    Qt::CaseSensitivity cs;
    bool blankMatters = false; // the needle holds a blank or a tab
    // The needle as ASCII bytes (case folded when the case does not count);
    // empty when it cannot match within a line of plain ASCII.
    QByteArray ascii;
    QByteArray shownAscii;
    Fold fold{};      // each byte as compared: case folded when the case does not count
    Fold shownFold{}; // the same with a tab as a blank
};
