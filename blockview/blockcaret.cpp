#include "blockcaret.h"

#include "blockrunlayout.h"

#include <QTextBoundaryFinder>

BlockCaret BlockCaret::placed(Pos at, bool select) const
{
    return BlockCaret(select ? anchorPos : at, at);
}

BlockCaret BlockCaret::moved(Move move, bool select, BlockRunLayout& runs,
                             qsizetype pageLines) const
{
    BlockCaret next = *this;
    const bool vertical = move >= Move::Up && move <= Move::PageDown;
    if (!vertical)
        next.preferredX = -1;
    else if (preferredX < 0)
        next.preferredX = xOf(runs, clamped(runs.text(), cursorPos));
    // An arrow without Shift leaves a selection at the side it points to.
    if (!select && hasSelection() && (move == Move::Left || move == Move::Right)) {
        next.cursorPos = clamped(runs.text(), move == Move::Left ? start() : end());
        next.anchorPos = next.cursorPos;
        return next;
    }
    next.cursorPos = next.target(move, runs, pageLines);
    if (!select)
        next.anchorPos = next.cursorPos;
    return next;
}

BlockCaret::Pos BlockCaret::target(Move move, BlockRunLayout& runs, qsizetype pageLines) const
{
    const BlockText& text = runs.text();
    const qsizetype last = text.lineCount() - 1;
    if (last < 0)
        return {};
    const Pos at = clamped(text, cursorPos);
    switch (move) {
    case Move::Left:
    case Move::Right:
        return stepped(runs, at, move == Move::Right, false);
    case Move::WordLeft:
    case Move::WordRight:
        return stepped(runs, at, move == Move::WordRight, true);
    case Move::Up:
    case Move::Down:
        return besideLine(runs, at, move == Move::Up ? -1 : 1);
    case Move::PageUp:
    case Move::PageDown:
        return besideLine(runs, at, move == Move::PageUp ? -pageLines : pageLines);
    case Move::LineStart:
        return {at.line, 0};
    case Move::LineEnd:
        return {at.line, text.lineLength(at.line)};
    case Move::Start:
        return {};
    case Move::End:
        return {last, text.lineLength(last)};
    case Move::LastLine:
        return {last, 0};
    }
    return at;
}

// One character (a whole cluster) or word on, crossing line ends.
BlockCaret::Pos BlockCaret::stepped(BlockRunLayout& runs, Pos from, bool forward, bool words)
{
    const BlockText& text = runs.text();
    if (forward && from.column < text.lineLength(from.line))
        return {from.line, runs.nextStop(from.line, from.column, words)};
    if (!forward && from.column > 0)
        return {from.line, runs.previousStop(from.line, from.column, words)};
    if (forward)
        return from.line + 1 < text.lineCount() ? Pos{from.line + 1, 0} : from;
    return from.line > 0 ? Pos{from.line - 1, text.lineLength(from.line - 1)} : from;
}

BlockCaret::Pos BlockCaret::besideLine(BlockRunLayout& runs, Pos from, qsizetype lines) const
{
    const qsizetype line = std::clamp<qsizetype>(from.line + lines, 0, runs.text().lineCount() - 1);
    const qreal x = preferredX >= 0 ? preferredX : xOf(runs, from);
    return {line, runs.columnAt(line, x)};
}

qreal BlockCaret::xOf(BlockRunLayout& runs, Pos pos)
{
    return runs.xOf(pos.line, pos.column);
}

BlockCaret BlockCaret::all(const BlockText& text)
{
    return text.lineCount() > 0 ? BlockCaret({}, {text.lineCount(), 0}) : BlockCaret();
}

BlockCaret BlockCaret::wordAt(const BlockText& text, Pos at)
{
    qsizetype offset = 0;
    const QString line = text.lineAround(at.line, at.column, offset);
    if (line.isEmpty())
        return BlockCaret(at, at);
    // The boundary item holding the character at the place.
    const int column = int(std::clamp<qsizetype>(at.column - offset, 0, line.size() - 1));
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, line);
    finder.setPosition(column + 1);
    const qsizetype first = std::max<qsizetype>(0, finder.toPreviousBoundary());
    finder.setPosition(column);
    const qsizetype last = finder.toNextBoundary();
    return BlockCaret({at.line, offset + first},
                      {at.line, offset + (last < 0 ? line.size() : last)});
}

BlockCaret::Pos BlockCaret::clamped(const BlockText& text, Pos pos)
{
    const qsizetype count = text.lineCount();
    if (count == 0)
        return {};
    if (pos.line >= count)
        return {count - 1, text.lineLength(count - 1)};
    return pos;
}
