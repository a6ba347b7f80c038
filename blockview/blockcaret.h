#pragma once

#include <QtGlobal>

#include <algorithm>

class BlockRunLayout;
class BlockText;

// The caret of a block view and the selection between its anchor and it,
// as a value: each move gives a new caret, laid out by a BlockRunLayout.
class BlockCaret
{
public:
    // A place between characters: a line and a UTF-16 column in it. The
    // very end of the text, behind the last line feed, is (lineCount, 0).
    struct Pos {
        qsizetype line = 0;
        qsizetype column = 0;
        bool operator==(const Pos& o) const { return line == o.line && column == o.column; }
        bool operator!=(const Pos& o) const { return !(*this == o); }
        bool operator<(const Pos& o) const
        {
            return line < o.line || (line == o.line && column < o.column);
        }
    };
    enum class Move {
        Left,
        Right,
        WordLeft,
        WordRight,
        Up,
        Down,
        PageUp,
        PageDown,
        LineStart,
        LineEnd,
        Start,
        End,
        LastLine // the start of the last line: End alone, as in a read-only view
    };

    BlockCaret() = default;
    BlockCaret(Pos anchor, Pos cursor) : anchorPos(anchor), cursorPos(cursor) {}

    Pos anchor() const { return anchorPos; }
    Pos cursor() const { return cursorPos; }
    Pos start() const { return std::min(anchorPos, cursorPos); }
    Pos end() const { return std::max(anchorPos, cursorPos); }
    bool hasSelection() const { return anchorPos != cursorPos; }
    bool operator==(const BlockCaret& o) const
    {
        return anchorPos == o.anchorPos && cursorPos == o.cursorPos;
    }
    bool operator!=(const BlockCaret& o) const { return !(*this == o); }

    // The caret put at a place; with select the anchor stays.
    BlockCaret placed(Pos at, bool select) const;
    // The caret after a move by key; with select the anchor stays. Up and
    // down keep to the x the first of them started from; a page is so many
    // lines.
    BlockCaret moved(Move move, bool select, BlockRunLayout& runs, qsizetype pageLines) const;

    // Every line with its line feed, so that a copy gives the whole text.
    static BlockCaret all(const BlockText& text);
    // The word (or blank, or sign) holding the character at a place.
    static BlockCaret wordAt(const BlockText& text, Pos at);
    // A place within the text: the end stands for the last line's end.
    static Pos clamped(const BlockText& text, Pos pos);
    static qreal xOf(BlockRunLayout& runs, Pos pos);

private:
    Pos target(Move move, BlockRunLayout& runs, qsizetype pageLines) const;
    static Pos stepped(BlockRunLayout& runs, Pos from, bool forward, bool words);
    Pos besideLine(BlockRunLayout& runs, Pos from, qsizetype lines) const;

    Pos anchorPos;
    Pos cursorPos;
    qreal preferredX = -1; // kept over up and down moves
};
