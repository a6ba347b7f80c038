#include "blockcolumns.h"

#include <charconv>

namespace
{

QByteArrayView trimmed(QByteArrayView text)
{
    while (!text.isEmpty() && (text.front() == ' ' || text.front() == '\t'))
        text = text.sliced(1);
    while (!text.isEmpty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r'))
        text.chop(1);
    return text;
}

} // namespace

BlockColumns::BlockColumns(const BlockText& blockText, const BlockLayout& layout)
    : text(&blockText), titles(layout.columnTitles), count(qBound(0, layout.columnCount, 7))
{
    for (int c = 0; c < count; ++c)
        starts[c + 1] = starts[c] + layout.columnWidths[c];
}

QString BlockColumns::title(int column) const
{
    if (titles[column])
        return QString::fromLatin1(titles[column]);
    return QString("Column %1").arg(column + 1);
}

template <typename Text> bool BlockColumns::fitsText(Text line) const
{
    const qsizetype length = line.size();
    if (length <= starts[count - 1] || length > starts[count])
        return false;
    // Fixed columns leave a blank on one side of each border at least; a
    // word across a border is a heading or a note.
    const auto blank = [&line](int at) { return line[at] == ' ' || line[at] == '\t'; };
    for (int c = 1; c < count; ++c)
        if (!blank(starts[c] - 1) && !blank(starts[c]))
            return false;
    return true;
}

bool BlockColumns::fits(qsizetype line) const
{
    if (count < 2)
        return false;
    const QByteArrayView bytes = text->lineView(line);
    if (text->isAsciiLine(line))
        return fitsText(bytes);
    return !text->isLong(line) && fitsText(QStringView(text->line(line)));
}

QString BlockColumns::cell(qsizetype line, int column) const
{
    if (!fits(line))
        return column == 0 ? misfit(line) : QString();
    const QByteArrayView bytes = text->lineView(line);
    if (text->isAsciiLine(line))
        return QString::fromLatin1(asciiCell(bytes, column));
    return wideCell(line, column);
}

std::optional<double> BlockColumns::numberAt(qsizetype line, int column) const
{
    // One look at the bytes: this runs for every row of a plot or a sort.
    const QByteArrayView bytes = text->lineView(line);
    if (text->isAsciiLine(line))
        return count > 1 && fitsText(bytes) ? parseNumber(asciiCell(bytes, column)) : std::nullopt;
    return fits(line) ? parseNumber(wideCell(line, column).toUtf8()) : std::nullopt;
}

bool BlockColumns::number(qsizetype line, int column, double& value) const
{
    const std::optional<double> found = numberAt(line, column);
    if (found)
        value = *found;
    return found.has_value();
}

QByteArrayView BlockColumns::cellBytes(qsizetype line, int column, QByteArray& spare) const
{
    if (!fits(line))
        return {};
    if (text->isAsciiLine(line))
        return asciiCell(text->lineView(line), column);
    spare = wideCell(line, column).toUtf8();
    return spare;
}

// A line that is not data, whole unless it is too long for a cell.
QString BlockColumns::misfit(qsizetype line) const
{
    constexpr qsizetype most = 4096;
    if (text->lineLength(line) <= most)
        return text->line(line);
    return text->lineSlice(line, 0, most) + QChar(0x2026);
}

QByteArrayView BlockColumns::asciiCell(QByteArrayView line, int column) const
{
    const qsizetype from = qMin<qsizetype>(starts[column], line.size());
    const qsizetype to = qMin<qsizetype>(starts[column + 1], line.size());
    return trimmed(line.sliced(from, to - from));
}

QString BlockColumns::wideCell(qsizetype line, int column) const
{
    return text->line(line).mid(starts[column], width(column)).trimmed();
}

std::optional<double> BlockColumns::parseNumber(QByteArrayView text)
{
    text = trimmed(text);
    // Checked here, so that from_chars sees a plain decimal number only.
    char buffer[64];
    if (text.isEmpty() || text.size() >= qsizetype(sizeof buffer) - 1)
        return std::nullopt;
    qsizetype at = 0, out = 0;
    const auto take = [&] { buffer[out++] = text[at++]; };
    const auto digits = [&] {
        const qsizetype from = at;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9')
            take();
        return at - from;
    };
    const auto isSign = [&] { return at < text.size() && (text[at] == '+' || text[at] == '-'); };
    if (isSign())
        text[at] == '-' ? take() : void(++at);
    qsizetype mantissa = digits();
    if (at < text.size() && text[at] == '.') {
        take();
        mantissa += digits();
    }
    if (mantissa == 0)
        return std::nullopt;
    qsizetype exponentFrom = out;
    if (at < text.size()) {
        const char mark = text[at] | 0x20; // lower case
        if (mark == 'e' || mark == 'd')
            ++at;
        else if (!isSign())
            return std::nullopt;
        buffer[out++] = 'e';
        exponentFrom = out;
        if (isSign())
            take();
        if (digits() == 0)
            return std::nullopt;
    }
    if (at != text.size())
        return std::nullopt;
    double value = 0;
    const auto result = std::from_chars(buffer, buffer + out, value);
    if (result.ec == std::errc())
        return value;
    // Out of range. With so few digits only the exponent can take it there:
    // too small to tell from zero is zero, too large is no number at all.
    if (out == exponentFrom || buffer[exponentFrom] != '-')
        return std::nullopt;
    return buffer[0] == '-' ? -0.0 : 0.0;
}
