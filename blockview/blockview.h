#pragma once

#include "blockcaret.h"
#include "blockrunlayout.h"
#include "blocktext.h"
#include "blockviewsearch.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>

#include <functional>

class BlockViewFindBar;
class BlockViewFinder;
class QMenu;
class QProgressDialog;
namespace platform
{
class FileReplacement;
}

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
    // there. Here and now, unlike the find bar's search, which runs aside.
    bool find(const QString& text, bool backward = false, bool caseSensitive = false);

    // The band a line is painted in, in viewport coordinates (outside the
    // viewport when the line is scrolled away).
    QRect lineRect(qsizetype line) const;
    // The caret, in viewport coordinates.
    QRect cursorRect() const;

    // Above this many bytes a copy of the selection is offered as a file
    // instead: the clipboard would hold the text several times over.
    static qint64 copyLimit;
    // A line is copied or saved this many UTF-16 units at a time.
    static qsizetype pieceUnits;

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

    using Pos = BlockCaret::Pos;
    using Move = BlockCaret::Move;

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

    qreal xOf(Pos pos) const { return BlockCaret::xOf(runs, pos); }
    Pos posAt(const QPoint& point, bool onCharacter = false) const;
    void paintLine(QPainter& painter, qsizetype line) const;
    void paintRun(QPainter& painter, qsizetype line, qsizetype run) const;

    // The caret and the selection.
    Pos clamped(Pos pos) const { return BlockCaret::clamped(text, pos); }
    Pos selectionStart() const { return caret.start(); }
    Pos selectionEnd() const { return caret.end(); }
    bool hasSelection() const { return caret.hasSelection(); }
    QString textBetween(Pos from, Pos to) const;
    // [from, to) of a line to sink in pieces of pieceUnits; false when it says stop.
    bool forEachSlice(qsizetype line, qsizetype from, qsizetype to,
                      const std::function<bool(const QString&)>& sink) const;
    // The selection's size in bytes, without making its text.
    qint64 selectionBytes() const;
    qint64 bytesBetween(Pos from, Pos to) const;
    // The selection as UTF-8, a line or a piece at a time, to sink; false
    // when it says stop.
    bool forEachSelectedPiece(const std::function<bool(QByteArrayView)>& sink) const;
    void saveSelection();
    bool writeSelection(platform::FileReplacement& file, QProgressDialog& progress) const;
    void setCaret(const BlockCaret& next);
    void setAnchorAndCursor(Pos newAnchor, Pos newCursor)
    {
        setCaret(BlockCaret(newAnchor, newCursor));
    }
    void moveCursor(Pos to, bool keepAnchor);
    void selectWordAt(const QPoint& point);
    void announce(const BlockCaret& old);
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
    Pos findStart(bool backward) const;
    bool showFound(const BlockViewSearch::Hit& hit, qsizetype size);
    void foundFromBar(const BlockViewSearch::Hit& hit);
    void stopFinding();
    void findAgain(bool backward);
    void closeFindBar();

    void scheduleRangeUpdate();

    BlockText text;
    BlockCaret caret;
    // Laid out as painted, hit or stepped over, and kept: a cache.
    mutable BlockRunLayout runs;
    int lineSpacing = 1;
    int hScale = 1;
    bool rangeUpdatePending = false;
    bool dragging = false;
    QPoint dragPoint;
    QBasicTimer scrollTimer;
    QBasicTimer blinkTimer;
    bool caretOn = true;
    bool lastFindWrapped = false;
    BlockViewFindBar* findBar = nullptr;
    BlockViewFinder* finder = nullptr; // the find bar's search
    qsizetype findingSize = 0;         // its needle's length
    bool findingBackward = false;
};
