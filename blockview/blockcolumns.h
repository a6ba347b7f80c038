#pragma once

#include "blocklayouts.h"
#include "blocktext.h"

#include <QString>

// A block's lines cut into the columns of its layout, one cell at a time
// when asked, so that nothing of the text is copied. A line fits when it
// reaches into the last column, is no wider than the layout, and no word
// runs across a column border; a line that does not (a heading inside the
// data, a short line) stands whole in the first column.
class BlockColumns
{
public:
    BlockColumns(const BlockText& text, const BlockLayout& layout);

    int columnCount() const { return count; }
    qsizetype lineCount() const { return text->lineCount(); }
    // The layout's title, or "Column 1" ...
    QString title(int column) const;
    // Width in characters.
    int width(int column) const { return starts[column + 1] - starts[column]; }

    bool fits(qsizetype line) const;
    // Without the blanks around it.
    QString cell(qsizetype line, int column) const;
    // False when the cell is not a number (or the line does not fit).
    bool number(qsizetype line, int column, double& value) const;

    // "-1.2E-03", "+4", " 7.5D+02 ": blanks around, a sign, a Fortran D.
    static bool parseNumber(QByteArrayView text, double& value);

private:
    template <typename Text> bool fitsText(Text line) const;
    // For a line of ASCII the bytes are the characters.
    QByteArrayView asciiCell(QByteArrayView line, int column) const;
    QString wideCell(qsizetype line, int column) const;
    QString misfit(qsizetype line) const;

    const BlockText* text;
    const char* const* titles;
    int count;
    int starts[8] = {}; // where each column starts; starts[count] is the width
};
