#pragma once

#include "blocktext.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>

class BlockViewFindBar;
class QMenu;
class QTextLayout;

// A read-only view of a block's text that paints only the lines in sight,
// so that a million lines open at once and scroll without delay. Fixed
// pitch, no wrapping; keyboard, mouse selection, copy, select all and find
// (Ctrl+F) as in a read-only text edit; readable by assistive technology.
class BlockView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit BlockView(QWidget* parent = nullptr);
    ~BlockView() override;

    void setBlockText(BlockText text);
    const BlockText& blockText() const;
    // Every line followed by a line feed, as the page shows it.
    QString toPlainText() const;

    QString selectedText() const;
    // Finds the text from the cursor on (or back), wrapping around the ends
    // once; selects and shows it. False, and nothing changes, when it is not
    // there.
    bool find(const QString& text, bool backward = false, bool caseSensitive = false);

    // The band a line is painted in, in viewport coordinates (outside the
    // viewport when the line is scrolled away).
    QRect lineRect(qsizetype line) const;
    // The caret, in viewport coordinates.
    QRect cursorRect() const;

    // Above this many bytes a copy of the selection is offered as a file
    // instead: the clipboard would hold the text several times over.
    static qint64 copyLimit;

public slots:
    // Through the last line feed, so that a copy gives toPlainText().
    void selectAll();
    void copy();

signals:
    void selectionChanged();

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    friend class BlockViewAccessible;

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

    // Geometry: lines scroll whole, one scroll bar step a line; sideways a
    // step is hScale pixels, so that a line wider than the scroll bar's
    // range is still reached to its end.
    qsizetype firstLine() const;
    int visibleLines() const;
    int lineTop(qsizetype line) const;
    qreal scrolledX() const;
    qreal textLeft() const;
    int caretWidth() const;
    void updateMetrics();
    void updateScrollBars();
    void ensureVisible(Pos pos);

    // A line is laid out in runs: a short one as one run, a long one in
    // runs of runColumns units, each placed as if every unit took a column
    // of the fixed-pitch font, so that only the runs in sight are ever laid
    // out or painted. Each run in sight is laid out once and kept while it
    // stays near.
    static constexpr qsizetype runColumns = 1024;
    qsizetype runCount(qsizetype line) const;
    qsizetype runOf(qsizetype line, qsizetype column) const;
    static qsizetype runStart(qsizetype run) { return run * runColumns; }
    qreal runX(qsizetype run) const { return qreal(run) * runColumns * columnWidth; }
    const QTextLayout& layoutOf(qsizetype line, qsizetype run = 0) const;
    std::unique_ptr<QTextLayout> makeLayout(qsizetype line, qsizetype run) const;
    void noteWidth(qreal width) const;
    qreal xOf(Pos pos) const;
    qsizetype columnAt(qsizetype line, qreal x, bool onCharacter = false) const;
    Pos posAt(const QPoint& point, bool onCharacter = false) const;
    void paintLine(QPainter& painter, qsizetype line) const;
    void paintRun(QPainter& painter, qsizetype line, qsizetype run) const;

    // The cursor and the selection between the anchor and it.
    Pos clamped(Pos pos) const;
    Pos selectionStart() const { return std::min(anchor, cursor); }
    Pos selectionEnd() const { return std::max(anchor, cursor); }
    bool hasSelection() const { return anchor != cursor; }
    QString textBetween(Pos from, Pos to) const;
    // The selection's size in bytes, without making its text.
    qint64 selectionBytes() const;
    qint64 bytesBetween(Pos from, Pos to) const;
    // The selection as UTF-8, a line at a time, to sink; false when it says stop.
    bool
    forEachSelectedPiece(const std::function<bool(QByteArrayView, qsizetype line)>& sink) const;
    void saveSelection();
    void setAnchorAndCursor(Pos newAnchor, Pos newCursor);
    void moveCursor(Pos to, bool keepAnchor);
    Pos moved(Pos from, Move move) const;
    Pos stepped(Pos from, bool forward, bool words) const;
    Pos besideLine(Pos from, qsizetype lines) const;
    void selectWordAt(const QPoint& point);
    void announce(Pos oldAnchor, Pos oldCursor);
    // Character offsets into toPlainText(), for assistive technology.
    int offsetOf(Pos pos) const;
    Pos posOf(qsizetype offset) const;

    // Keys and pointer.
    static bool navigationOf(const QKeyEvent* event, Move& move, bool& select);
    bool handleNavigationKey(QKeyEvent* event);
    void navigate(Move move, bool select);
    bool handleCommandKey(QKeyEvent* event);
    bool isOwnKey(QKeyEvent* event) const;
    void dragTo(const QPoint& point);
    void autoScroll();
    QMenu* createContextMenu();
    void popupContextMenu(const QPoint& at);
    void restartBlinking();

    // The find bar.
    void openFindBar();
    void placeFindBar();
    void findFromBar(bool backward);
    void findAgain(bool backward);
    void closeFindBar();

    BlockText text;
    Pos anchor;
    Pos cursor;
    qreal preferredX = -1; // kept over up and down moves
    int lineSpacing = 1;
    qreal columnWidth = 1; // a unit of a long line
    int hScale = 1;
    mutable qreal widest = 0; // the widest line laid out so far
    mutable bool rangeUpdatePending = false;
    mutable std::map<std::pair<qsizetype, qsizetype>, std::unique_ptr<QTextLayout>> layouts;
    bool dragging = false;
    QPoint dragPoint;
    QBasicTimer scrollTimer;
    QBasicTimer blinkTimer;
    bool caretOn = true;
    bool lastFindWrapped = false;
    BlockViewFindBar* findBar = nullptr;
};
