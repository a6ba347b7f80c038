#pragma once

#include "blocktext.h"

// Finds a string in a block's text, one line at a time. Lines of plain
// ASCII (nearly all of a report) are searched in their stored bytes; only
// the others are decoded, and there Qt's own comparison decides, so a match
// is what QString::indexOf would find in the decoded line.
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
    // from: the first start allowed, or when backward the last one.
    qsizetype inLine(qsizetype line, qsizetype from, bool backward) const;
    qsizetype inLongLine(qsizetype line, qsizetype from, bool backward) const;
    qsizetype lastIn(const QString& decoded, qsizetype from) const;
    qsizetype inAscii(QByteArrayView line, qsizetype from, bool backward) const;
    bool asciiMatchAt(const char* at) const;

    const BlockText& text;
    QString needle;
    Qt::CaseSensitivity cs;
    // The needle as ASCII bytes (case folded when the case does not count);
    // empty when it cannot match within a line of plain ASCII.
    QByteArray ascii;
};
