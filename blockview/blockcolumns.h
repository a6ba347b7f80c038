#pragma once

#include "blocklayouts.h"
#include "blocktext.h"

#include <QString>

#include <optional>

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
    // A line's stored bytes (UTF-8), valid while the text is.
    QByteArrayView lineBytes(qsizetype line) const { return text->lineView(line); }
    // The layout's title, or "Column 1" ...
    QString title(int column) const;
    // Width in characters.
    int width(int column) const { return starts[column + 1] - starts[column]; }

    bool fits(qsizetype line) const;
    // Without the blanks around it. A line that does not fit is its first
    // cell, given by misfit().
    QString cell(qsizetype line, int column) const;
    // The cell's bytes (UTF-8), valid while the text is; for a line of
    // wide characters the bytes are made in spare, which must outlive them.
    QByteArrayView cellBytes(qsizetype line, int column, QByteArray& spare) const;
    // A line that is not data, whole unless it is too long for a cell.
    QString misfit(qsizetype line) const;
    // The cell's finite number, or none when it holds text (or the line
    // does not fit).
    std::optional<double> numberAt(qsizetype line, int column) const;
    // The same; value stays as it was when there is no number.
    bool number(qsizetype line, int column, double& value) const;

    // The forms a solver writes: "-1.2E-03", "+4", " 7.5D+02 ", "2.5",
    // and "1.000000-100" (Fortran drops the letter of a three-digit
    // exponent). Anything else is text: "inf", "nan", "1,5", "1.5-", a
    // number too large for a double.
    static std::optional<double> parseNumber(QByteArrayView text);

private:
    template <typename Text> bool fitsText(Text line) const;
    // For a line of ASCII the bytes are the characters.
    QByteArrayView asciiCell(QByteArrayView line, int column) const;
    QString wideCell(qsizetype line, int column) const;

    const BlockText* text;
    const char* const* titles;
    int count;
    int starts[8] = {}; // where each column starts; starts[count] is the width
};
