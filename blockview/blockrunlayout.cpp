#include "blockrunlayout.h"

#include <QFontMetricsF>
#include <QTextLayout>

#include <climits>
#include <cmath>

namespace
{

constexpr int tabColumns = 8;
// Wider than any line, so that nothing wraps.
constexpr qreal unlimitedWidth = qreal(INT_MAX / 256);

qreal naturalWidth(QTextLayout& layout)
{
    layout.beginLayout();
    QTextLine row = layout.createLine();
    row.setLineWidth(unlimitedWidth);
    row.setPosition(QPointF(0, 0));
    layout.endLayout();
    return row.naturalTextWidth();
}

} // namespace

const BlockText BlockRunLayout::empty;

void BlockRunLayout::setText(const BlockText* text)
{
    blockText = text ? text : &empty;
    layouts.clear();
    widestSeen = 0;
}

void BlockRunLayout::setFont(const QFont& newFont, QPaintDevice* paintDevice)
{
    font = newFont;
    device = paintDevice;
    // A column as a run is laid out, rounding and all, so that runs meet.
    QTextLayout digits(QString(runColumns, QLatin1Char('0')), font, device);
    column = std::max<qreal>(1, naturalWidth(digits) / runColumns);
    layouts.clear();
    widestSeen = 0;
}

qsizetype BlockRunLayout::runCount(qsizetype line) const
{
    if (!blockText->isLong(line))
        return 1;
    return std::max<qsizetype>(1, (blockText->lineLength(line) + runColumns - 1) / runColumns);
}

qsizetype BlockRunLayout::runOf(qsizetype line, qsizetype at) const
{
    return blockText->isLong(line) ? std::clamp<qsizetype>(at / runColumns, 0, runCount(line) - 1)
                                   : 0;
}

qsizetype BlockRunLayout::runAtX(qsizetype line, qreal x) const
{
    if (!blockText->isLong(line))
        return 0;
    const qreal span = runColumns * column;
    return qsizetype(std::clamp<qreal>(std::floor(x / span), 0, qreal(runCount(line) - 1)));
}

const QTextLayout& BlockRunLayout::layoutOf(qsizetype line, qsizetype run)
{
    const auto key = std::make_pair(line, run);
    const auto found = layouts.find(key);
    if (found != layouts.end())
        return *found->second;
    if (qsizetype(layouts.size()) >= cacheLimit)
        layouts.clear();
    return *layouts.emplace(key, makeLayout(line, run)).first->second;
}

std::unique_ptr<QTextLayout> BlockRunLayout::makeLayout(qsizetype line, qsizetype run)
{
    const bool isLong = blockText->isLong(line);
    QString shown =
        isLong ? blockText->lineSlice(line, runStart(run), runColumns) : blockText->line(line);
    // Separators would break the line in two; in a long line a tab takes one
    // column like every other character, or the runs would overlap.
    for (QChar& c : shown)
        if (c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = QChar::ReplacementCharacter;
        else if (isLong && c == QLatin1Char('\t'))
            c = QLatin1Char(' ');
    auto layout = std::make_unique<QTextLayout>(shown, font, device);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    option.setTabStopDistance(tabColumns * QFontMetricsF(font).horizontalAdvance(' '));
    layout->setTextOption(option);
    layout->setCacheEnabled(true);
    const qreal width = naturalWidth(*layout);
    noteWidth(isLong ? std::max(runX(run) + width, blockText->lineLength(line) * column) : width);
    return layout;
}

void BlockRunLayout::noteWidth(qreal width)
{
    if (width <= widestSeen)
        return;
    widestSeen = width;
    if (widthListener)
        widthListener();
}

qreal BlockRunLayout::xOf(qsizetype line, qsizetype at)
{
    if (line < 0 || line >= blockText->lineCount())
        return 0;
    const qsizetype run = runOf(line, at);
    return runX(run) + layoutOf(line, run).lineAt(0).cursorToX(int(at - runStart(run)));
}

qsizetype BlockRunLayout::columnAt(qsizetype line, qreal x, bool onCharacter)
{
    const qsizetype run = runAtX(line, x);
    const auto mode =
        onCharacter ? QTextLine::CursorOnCharacter : QTextLine::CursorBetweenCharacters;
    return runStart(run) + layoutOf(line, run).lineAt(0).xToCursor(x - runX(run), mode);
}

qsizetype BlockRunLayout::nextStop(qsizetype line, qsizetype at, bool words)
{
    if (at >= blockText->lineLength(line))
        return at;
    const qsizetype run = runOf(line, at);
    const qsizetype start = runStart(run);
    const auto mode = words ? QTextLayout::SkipWords : QTextLayout::SkipCharacters;
    return start + layoutOf(line, run).nextCursorPosition(int(at - start), mode);
}

qsizetype BlockRunLayout::previousStop(qsizetype line, qsizetype at, bool words)
{
    if (at <= 0)
        return at;
    const qsizetype run = runOf(line, at - 1);
    const qsizetype start = runStart(run);
    const auto mode = words ? QTextLayout::SkipWords : QTextLayout::SkipCharacters;
    return start + layoutOf(line, run).previousCursorPosition(int(at - start), mode);
}
