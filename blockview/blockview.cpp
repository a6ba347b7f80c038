#include "blockview.h"

#include "blockfilewriter.h"
#include "blockviewaccessible.h"
#include "blockviewfindbar.h"
#include "blockviewfinder.h"
#include "platform/filereplacement.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFile>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QProgressDialog>
#include <QScrollBar>
#include <QStyle>
#include <QTextLayout>
#include <QTimer>

#include <climits>
#include <cmath>

namespace
{

constexpr int margin = 4; // left and right of the text, as in a text edit
constexpr int topMargin = 2;
constexpr int autoScrollMs = 50;
constexpr qsizetype layoutCacheMin = 512;
constexpr int runsInSight = 8;          // runs kept laid out for each line in sight
constexpr qint64 findBarTextMax = 1024; // a selection taken into the find bar

QString shortcutText(QKeySequence::StandardKey key)
{
    const QKeySequence sequence(key);
    return sequence.isEmpty() ? QString() : "\t" + sequence.toString(QKeySequence::NativeText);
}

// Places far out of sight stay far out of sight, without overflow.
int viewX(qreal x)
{
    return int(std::clamp<qreal>(x, INT_MIN / 2, INT_MAX / 2));
}

bool isCtrlInsert(const QKeyEvent* event)
{
    return event->key() == Qt::Key_Insert && event->modifiers() == Qt::ControlModifier;
}

// The menu key, and Shift+F10 for keyboards without one.
bool isMenuKey(const QKeyEvent* event)
{
    return event->key() == Qt::Key_Menu ||
           (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier);
}

} // namespace

BlockView::BlockView(QWidget* parent) : QAbstractScrollArea(parent)
{
    static const bool accessible = [] {
        QAccessible::installFactory(BlockViewAccessible::create);
        return true;
    }();
    Q_UNUSED(accessible);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setCursor(Qt::IBeamCursor);
    runs.setText(&text);
    runs.setWidthListener([this] { scheduleRangeUpdate(); });
    updateMetrics();
}

// The search reads the text, which goes before the children do.
BlockView::~BlockView()
{
    stopFinding();
}

void BlockView::setBlockText(BlockText newText)
{
    stopFinding();
    text = std::move(newText);
    runs.setText(&text);
    caret = BlockCaret();
    verticalScrollBar()->setValue(0);
    horizontalScrollBar()->setValue(0);
    updateMetrics();
}

const BlockText& BlockView::blockText() const
{
    return text;
}

QString BlockView::toPlainText() const
{
    return text.toString();
}

QString BlockView::selectedText() const
{
    return textBetween(selectionStart(), selectionEnd());
}

QString BlockView::textBetween(Pos from, Pos to) const
{
    QString result;
    // One allocation: a UTF-8 byte is at most one UTF-16 unit.
    result.reserve(qsizetype(std::min<qint64>(bytesBetween(from, to) + 1, INT_MAX)));
    const qsizetype last = std::min(to.line, text.lineCount() - 1);
    for (qsizetype line = from.line; line <= last; ++line) {
        const qsizetype start = line == from.line ? from.column : 0;
        const qsizetype end = line == to.line ? to.column : LLONG_MAX / 2; // to its end
        forEachSlice(line, start, end, [&](const QString& piece) {
            result += piece;
            return true;
        });
        if (line < to.line)
            result += QLatin1Char('\n');
    }
    return result;
}

qsizetype BlockView::pieceUnits = qsizetype(1) << 20;

// A long line is never decoded whole: a copy would hold it twice over.
bool BlockView::forEachSlice(qsizetype line, qsizetype from, qsizetype to,
                             const std::function<bool(const QString&)>& sink) const
{
    const qsizetype units = std::max<qsizetype>(2, pieceUnits);
    for (;;) {
        const qsizetype wanted = std::min(units, to - from);
        QString piece = text.lineSlice(line, from, wanted);
        const bool last = piece.size() < wanted || wanted == to - from;
        if (!last && piece.back().isHighSurrogate()) // not half a pair in each piece
            piece.chop(1);
        from += piece.size();
        if (!sink(piece))
            return false;
        if (last)
            return true;
    }
}

// --- Geometry

qsizetype BlockView::firstLine() const
{
    return verticalScrollBar()->value();
}

int BlockView::visibleLines() const
{
    return std::max(1, (viewport()->height() - topMargin) / lineSpacing);
}

int BlockView::lineTop(qsizetype line) const
{
    const qsizetype top = topMargin + (line - firstLine()) * lineSpacing;
    return int(std::clamp<qsizetype>(top, INT_MIN / 2, INT_MAX / 2));
}

qreal BlockView::scrolledX() const
{
    return qreal(horizontalScrollBar()->value()) * hScale;
}

qreal BlockView::textLeft() const
{
    return margin - scrolledX();
}

int BlockView::caretWidth() const
{
    return std::max(1, style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this));
}

QRect BlockView::lineRect(qsizetype line) const
{
    return QRect(0, lineTop(line), viewport()->width(), lineSpacing);
}

QRect BlockView::cursorRect() const
{
    const Pos at = clamped(caret.cursor());
    return QRect(viewX(textLeft() + xOf(at)), lineTop(at.line), caretWidth(), lineSpacing);
}

void BlockView::updateMetrics()
{
    lineSpacing = std::max(1, QFontMetrics(font()).lineSpacing());
    runs.setFont(font(), viewport());
    if (text.longestLine() >= 0)
        runs.layoutOf(text.longestLine());
    updateScrollBars();
    viewport()->update();
}

void BlockView::updateScrollBars()
{
    rangeUpdatePending = false;
    const int lines = visibleLines();
    runs.setCacheLimit(std::max<qsizetype>(layoutCacheMin, runsInSight * lines));
    QScrollBar* vertical = verticalScrollBar();
    const qsizetype lastFirst = std::max<qsizetype>(0, text.lineCount() - lines);
    vertical->setRange(0, int(std::min<qsizetype>(lastFirst, INT_MAX)));
    vertical->setPageStep(lines);
    vertical->setSingleStep(1);
    QScrollBar* horizontal = horizontalScrollBar();
    const int width = viewport()->width();
    const qreal over =
        std::max<qreal>(0, std::ceil(runs.widest()) + 2 * margin + caretWidth() - width);
    const qreal scrolled = scrolledX();
    hScale = int(std::max<qreal>(1, std::ceil(over / (INT_MAX / 2))));
    horizontal->setRange(0, int(std::ceil(over / hScale)));
    horizontal->setValue(int(scrolled / hScale));
    horizontal->setPageStep(std::max(1, width / hScale));
    horizontal->setSingleStep(std::max(1, 2 * QFontMetrics(font()).averageCharWidth() / hScale));
}

void BlockView::ensureVisible(Pos pos)
{
    const Pos at = clamped(pos);
    const qreal x = xOf(at); // from the start of the text; may widen the range
    if (rangeUpdatePending)
        updateScrollBars();
    QScrollBar* vertical = verticalScrollBar();
    if (at.line < firstLine())
        vertical->setValue(int(at.line));
    else if (at.line >= firstLine() + visibleLines())
        vertical->setValue(int(at.line - visibleLines() + 1));
    QScrollBar* horizontal = horizontalScrollBar();
    const qreal room = viewport()->width() - 2 * margin - caretWidth();
    if (x < scrolledX())
        horizontal->setValue(int(std::floor(x / hScale)));
    else if (x > scrolledX() + room)
        horizontal->setValue(int(std::ceil((x - room) / hScale)));
}

// The range of the horizontal scroll bar grows as wider lines come in sight;
// it changes after the painting that found them.
void BlockView::scheduleRangeUpdate()
{
    if (rangeUpdatePending)
        return;
    rangeUpdatePending = true;
    QTimer::singleShot(0, this, [this] {
        if (rangeUpdatePending)
            updateScrollBars();
    });
}

BlockView::Pos BlockView::posAt(const QPoint& point, bool onCharacter) const
{
    if (text.lineCount() == 0)
        return {};
    const qsizetype row = qsizetype(std::floor(double(point.y() - topMargin) / lineSpacing));
    const qsizetype line = std::clamp<qsizetype>(firstLine() + row, 0, text.lineCount() - 1);
    return {line, runs.columnAt(line, point.x() - textLeft(), onCharacter)};
}

// --- Painting

void BlockView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Text));
    const QRect area = event->rect();
    const qsizetype first = firstLine() + std::max(0, (area.top() - topMargin) / lineSpacing);
    const qsizetype end = firstLine() + (area.bottom() - topMargin) / lineSpacing + 1;
    for (qsizetype line = first; line < std::min(end, text.lineCount()); ++line)
        paintLine(painter, line);
}

void BlockView::paintLine(QPainter& painter, qsizetype line) const
{
    // The runs under the viewport, and one more each side for glyphs that
    // reach over their run's edge.
    qsizetype first = 0;
    qsizetype last = 0;
    if (text.isLong(line)) {
        const qreal span = BlockRunLayout::runColumns * runs.columnWidth();
        const qreal left = scrolledX() - margin;
        first = qsizetype(std::max<qreal>(0, std::floor(left / span) - 1));
        last =
            std::min(runs.runCount(line) - 1, qsizetype((left + viewport()->width()) / span) + 1);
    }
    for (qsizetype run = first; run <= last; ++run)
        paintRun(painter, line, run);
    const qreal top = lineTop(line);
    const Pos lineEnd{line, hasSelection() ? text.lineLength(line) : 0};
    if (hasSelection() && selectionStart().line <= line && line < selectionEnd().line &&
        runs.runOf(line, lineEnd.column) <= last) { // its line feed is selected too
        const auto group = hasFocus() ? QPalette::Active : QPalette::Inactive;
        const qreal x = textLeft() + xOf(lineEnd);
        const qreal blank = QFontMetricsF(font()).horizontalAdvance(' ');
        painter.fillRect(QRectF(x, top, blank, lineSpacing),
                         palette().brush(group, QPalette::Highlight));
    }
    const Pos at = caret.cursor();
    const qsizetype caretRun = runs.runOf(line, at.column);
    if (line == at.line && caretOn && hasFocus() && first <= caretRun && caretRun <= last)
        runs.layoutOf(line, caretRun)
            .drawCursor(&painter, QPointF(textLeft() + runs.runX(caretRun), top),
                        int(at.column - BlockRunLayout::runStart(caretRun)), caretWidth());
}

void BlockView::paintRun(QPainter& painter, qsizetype line, qsizetype run) const
{
    const QTextLayout& layout = runs.layoutOf(line, run);
    const qsizetype start = BlockRunLayout::runStart(run);
    const qsizetype end = start + layout.text().size();
    QVector<QTextLayout::FormatRange> selections;
    const Pos from = selectionStart();
    const Pos to = selectionEnd();
    if (hasSelection() && from.line <= line && line <= to.line) {
        const qsizetype a = line == from.line ? std::max(start, from.column) : start;
        const qsizetype b = line == to.line ? std::min(end, to.column) : end;
        const auto group = hasFocus() ? QPalette::Active : QPalette::Inactive;
        QTextLayout::FormatRange range;
        range.start = int(a - start);
        range.length = int(std::max<qsizetype>(0, b - a));
        range.format.setBackground(palette().brush(group, QPalette::Highlight));
        range.format.setForeground(palette().brush(group, QPalette::HighlightedText));
        selections.append(range);
    }
    layout.draw(&painter, QPointF(textLeft() + runs.runX(run), lineTop(line)), selections);
}

void BlockView::scrollContentsBy(int, int)
{
    viewport()->update();
}

void BlockView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBars();
    placeFindBar();
}

void BlockView::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateMetrics();
}

// --- Cursor and selection

void BlockView::setCaret(const BlockCaret& next)
{
    const BlockCaret old = caret;
    caret = next;
    if (caret == old)
        return;
    viewport()->update();
    restartBlinking();
    announce(old);
}

void BlockView::moveCursor(Pos to, bool keepAnchor)
{
    setCaret(caret.placed(to, keepAnchor));
    ensureVisible(to);
}

void BlockView::selectAll()
{
    if (text.lineCount() > 0)
        setCaret(BlockCaret::all(text));
}

qint64 BlockView::copyLimit = qint64(64) << 20;

void BlockView::copy()
{
    if (!hasSelection())
        return;
    if (selectionBytes() > copyLimit)
        saveSelection();
    else
        QGuiApplication::clipboard()->setText(selectedText());
}

qint64 BlockView::selectionBytes() const
{
    return bytesBetween(selectionStart(), selectionEnd());
}

// At most the bytes of the text between two places, line feeds included.
qint64 BlockView::bytesBetween(Pos from, Pos to) const
{
    if (text.lineCount() == 0 || from.line >= text.lineCount())
        return 0;
    const qsizetype last = std::min(to.line, text.lineCount() - 1);
    const QByteArrayView first = text.lineView(from.line);
    const QByteArrayView end = text.lineView(last);
    // The stored lines lie back to back: their span, one line feed each.
    return (end.data() + end.size() - first.data()) + (last - from.line) + (to.line > last);
}

bool BlockView::forEachSelectedPiece(const std::function<bool(QByteArrayView)>& sink) const
{
    const Pos from = selectionStart();
    const Pos to = selectionEnd();
    const qsizetype last = std::min(to.line, text.lineCount() - 1);
    for (qsizetype line = from.line; line <= last; ++line) {
        const qsizetype start = line == from.line ? from.column : 0;
        const qsizetype end = line == to.line ? to.column : text.lineLength(line);
        const bool whole = start == 0 && end >= text.lineLength(line);
        const bool sent = whole ? sink(text.lineView(line))
                                : forEachSlice(line, start, end, [&](const QString& piece) {
                                      return sink(piece.toUtf8());
                                  });
        if (!sent || (line < to.line && !sink("\n")))
            return false;
    }
    return true;
}

// Written the way the program writes its files, a megabyte at a time under
// a progress dialog; a cancelled or failed save leaves no file behind.
void BlockView::saveSelection()
{
    const QString path = BlockFileWriter::askSaveInstead(this, selectionBytes());
    if (path.isEmpty())
        return;
    platform::FileReplacement file(QFile::encodeName(path).toStdString());
    QProgressDialog progress(tr("Saving the selection"), tr("Cancel"), 0, 1000, this);
    progress.setWindowModality(Qt::WindowModal);
    const bool done = writeSelection(file, progress);
    if (progress.wasCanceled())
        return;
    if (!done || !file.commit())
        QMessageBox::warning(this, tr("Save Selection"),
                             tr("%1 cannot be written:\n%2")
                                 .arg(path, QString::fromLocal8Bit(file.error().c_str())));
}

// A megabyte at a time, short lines gathered, a long one in parts, so that
// neither is held whole and Cancel is heard between any two writes.
bool BlockView::writeSelection(platform::FileReplacement& file, QProgressDialog& progress) const
{
    constexpr qsizetype part = qsizetype(1) << 20;
    const double total = double(std::max<qint64>(1, selectionBytes()));
    qint64 written = 0;
    const auto write = [&](QByteArrayView bytes) {
        for (qsizetype at = 0; at < bytes.size(); at += part) {
            progress.setValue(int(1000 * (written / total)));
            const qsizetype size = std::min(part, bytes.size() - at);
            if (progress.wasCanceled() || !file.write(bytes.data() + at, size_t(size)))
                return false;
            written += size;
        }
        return true;
    };
    QByteArray chunk;
    const bool done = forEachSelectedPiece([&](QByteArrayView piece) {
        if (chunk.size() + piece.size() < part) {
            chunk.append(piece);
            return true;
        }
        const bool fine = write(chunk) && write(piece);
        chunk.clear();
        return fine;
    });
    return done && write(chunk);
}

void BlockView::selectWordAt(const QPoint& point)
{
    if (text.lineCount() == 0)
        return;
    const BlockCaret word = BlockCaret::wordAt(text, posAt(point, true));
    if (word.hasSelection())
        setCaret(word);
}

int BlockView::offsetOf(Pos pos) const
{
    const qsizetype offset =
        text.characterOffset(pos.line) + (pos.line < text.lineCount() ? pos.column : 0);
    return int(std::min<qsizetype>(offset, INT_MAX));
}

BlockView::Pos BlockView::posOf(qsizetype offset) const
{
    const qsizetype at = std::clamp<qsizetype>(offset, 0, text.characterCount());
    const qsizetype line = text.lineAtOffset(at);
    if (line >= text.lineCount())
        return {text.lineCount(), 0};
    return {line, at - text.characterOffset(line)};
}

// Tells assistive technology, as a text edit does; only when one listens,
// since the first offset asked for costs a pass over the text.
void BlockView::announce(const BlockCaret& old)
{
    const bool selectionMoved = old.start() != selectionStart() || old.end() != selectionEnd();
    if (selectionMoved)
        emit selectionChanged();
    if (!QAccessible::isActive())
        return;
    const int position = offsetOf(caret.cursor());
    if (selectionMoved) {
        QAccessibleTextSelectionEvent event(this, offsetOf(selectionStart()),
                                            offsetOf(selectionEnd()));
        event.setCursorPosition(position);
        QAccessible::updateAccessibility(&event);
    }
    if (old.cursor() != caret.cursor()) {
        QAccessibleTextCursorEvent event(this, position);
        QAccessible::updateAccessibility(&event);
    }
}

// --- Keys

bool BlockView::event(QEvent* event)
{
    // Ahead of the window's shortcuts, as a text edit does for its keys.
    if (event->type() == QEvent::ShortcutOverride && isOwnKey(static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QAbstractScrollArea::event(event);
}

namespace
{

const QKeySequence::StandardKey commandKeys[] = {QKeySequence::SelectAll, QKeySequence::Copy,
                                                 QKeySequence::Find, QKeySequence::FindNext,
                                                 QKeySequence::FindPrevious};

} // namespace

bool BlockView::isOwnKey(QKeyEvent* event) const
{
    Move move;
    bool select;
    if (navigationOf(event, move, select))
        return true;
    for (QKeySequence::StandardKey key : commandKeys)
        if (event->matches(key))
            return true;
    return isCtrlInsert(event) ||
           (event->key() == Qt::Key_Escape && findBar && findBar->isVisible());
}

void BlockView::keyPressEvent(QKeyEvent* event)
{
    if (handleNavigationKey(event) || handleCommandKey(event))
        event->accept();
    else
        QAbstractScrollArea::keyPressEvent(event);
}

bool BlockView::navigationOf(const QKeyEvent* event, Move& move, bool& select)
{
    static const struct {
        QKeySequence::StandardKey move, select;
        Move where;
    } keys[] = {
        {QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar, Move::Left},
        {QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar, Move::Right},
        {QKeySequence::MoveToPreviousWord, QKeySequence::SelectPreviousWord, Move::WordLeft},
        {QKeySequence::MoveToNextWord, QKeySequence::SelectNextWord, Move::WordRight},
        {QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine, Move::Up},
        {QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine, Move::Down},
        {QKeySequence::MoveToPreviousPage, QKeySequence::SelectPreviousPage, Move::PageUp},
        {QKeySequence::MoveToNextPage, QKeySequence::SelectNextPage, Move::PageDown},
        {QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine, Move::LineStart},
        {QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine, Move::LineEnd},
        {QKeySequence::MoveToStartOfDocument, QKeySequence::SelectStartOfDocument, Move::Start},
        {QKeySequence::MoveToEndOfDocument, QKeySequence::SelectEndOfDocument, Move::End},
    };
    // Space pages as in a read-only view; with Shift it pages back.
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (event->key() == Qt::Key_Space &&
        (modifiers == Qt::NoModifier || modifiers == Qt::ShiftModifier)) {
        move = modifiers == Qt::NoModifier ? Move::PageDown : Move::PageUp;
        select = false;
        return true;
    }
    for (const auto& key : keys) {
        select = event->matches(key.select);
        if (select || event->matches(key.move)) {
            move = key.where;
            // Home and End alone go to the top and the bottom, as in a
            // read-only text view, End to the last line's start so that the
            // view stays at the first column; with Shift they select within
            // the line.
            if (!select && move == Move::LineStart)
                move = Move::Start;
            else if (!select && move == Move::LineEnd)
                move = Move::LastLine;
            return true;
        }
    }
    return false;
}

bool BlockView::handleNavigationKey(QKeyEvent* event)
{
    Move move;
    bool select;
    if (!navigationOf(event, move, select))
        return false;
    navigate(move, select);
    return true;
}

void BlockView::navigate(Move move, bool select)
{
    const BlockCaret next = caret.moved(move, select, runs, visibleLines());
    // The view scrolls at once, the caret follows: a line a step, a page a
    // page; a selection grown by Shift+arrows only follows its caret.
    const bool line = move == Move::Up || move == Move::Down;
    if ((line && !select) || move == Move::PageUp || move == Move::PageDown) {
        const int back = move == Move::Up || move == Move::PageUp ? -1 : 1;
        QScrollBar* vertical = verticalScrollBar();
        vertical->setValue(vertical->value() + back * (line ? 1 : visibleLines()));
    }
    setCaret(next);
    ensureVisible(next.cursor());
}

bool BlockView::handleCommandKey(QKeyEvent* event)
{
    if (event->matches(QKeySequence::SelectAll))
        selectAll();
    else if (event->matches(QKeySequence::Copy) || isCtrlInsert(event))
        copy();
    else if (event->matches(QKeySequence::Find))
        openFindBar();
    else if (event->matches(QKeySequence::FindNext) || event->matches(QKeySequence::FindPrevious))
        findAgain(event->matches(QKeySequence::FindPrevious));
    else if (event->key() == Qt::Key_Escape && findBar && findBar->isVisible())
        closeFindBar();
    else if (isMenuKey(event))
        popupContextMenu(viewport()->mapToGlobal(cursorRect().bottomLeft()));
    else
        return false;
    return true;
}

// --- Pointer

void BlockView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QAbstractScrollArea::mousePressEvent(event);
        return;
    }
    dragging = true;
    moveCursor(posAt(event->position().toPoint()), event->modifiers() & Qt::ShiftModifier);
}

void BlockView::mouseMoveEvent(QMouseEvent* event)
{
    if (dragging && (event->buttons() & Qt::LeftButton))
        dragTo(event->position().toPoint());
}

void BlockView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !dragging)
        return;
    dragging = false;
    scrollTimer.stop();
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (hasSelection() && clipboard->supportsSelection() && selectionBytes() <= copyLimit)
        clipboard->setText(selectedText(), QClipboard::Selection);
}

void BlockView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    dragging = false;
    selectWordAt(event->position().toPoint());
}

// Outside the viewport the drag keeps scrolling, faster the farther out.
void BlockView::dragTo(const QPoint& point)
{
    dragPoint = point;
    if (viewport()->rect().contains(point))
        scrollTimer.stop();
    else if (!scrollTimer.isActive())
        scrollTimer.start(autoScrollMs, this);
    autoScroll();
}

void BlockView::autoScroll()
{
    moveCursor(posAt(dragPoint), true);
}

void BlockView::contextMenuEvent(QContextMenuEvent* event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    popupContextMenu(byKey ? viewport()->mapToGlobal(cursorRect().bottomLeft())
                           : event->globalPos());
}

void BlockView::popupContextMenu(const QPoint& at)
{
    QMenu* menu = createContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(at);
}

// The entries a read-only text edit offers.
QMenu* BlockView::createContextMenu()
{
    auto* menu = new QMenu(this);
    menu->setObjectName("qt_edit_menu");
    QAction* copyAction =
        menu->addAction(tr("&Copy") + shortcutText(QKeySequence::Copy), this, &BlockView::copy);
    copyAction->setEnabled(hasSelection());
    menu->addSeparator();
    QAction* all = menu->addAction(tr("Select All") + shortcutText(QKeySequence::SelectAll), this,
                                   &BlockView::selectAll);
    all->setEnabled(text.lineCount() > 0);
    return menu;
}

// --- Focus and the caret

void BlockView::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    restartBlinking();
    viewport()->update();
}

void BlockView::focusOutEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusOutEvent(event);
    blinkTimer.stop();
    viewport()->update();
}

void BlockView::restartBlinking()
{
    caretOn = true;
    const int flash = QApplication::cursorFlashTime();
    if (hasFocus() && flash > 0)
        blinkTimer.start(flash / 2, this);
    else
        blinkTimer.stop();
}

void BlockView::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == blinkTimer.timerId()) {
        caretOn = !caretOn;
        viewport()->update(cursorRect());
    } else if (event->timerId() == scrollTimer.timerId()) {
        autoScroll();
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}

// --- Find

bool BlockView::find(const QString& needle, bool backward, bool caseSensitive)
{
    stopFinding();
    const Pos from = findStart(backward);
    const BlockViewSearch search(text, needle,
                                 caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive);
    return showFound(search.find(from.line, from.column, backward), needle.size());
}

BlockView::Pos BlockView::findStart(bool backward) const
{
    return clamped(backward ? selectionStart() : selectionEnd());
}

bool BlockView::showFound(const BlockViewSearch::Hit& hit, qsizetype size)
{
    lastFindWrapped = false;
    if (hit.line < 0)
        return false;
    lastFindWrapped = hit.wrapped;
    const Pos start{hit.line, hit.column};
    const Pos end{hit.line, hit.column + size};
    ensureVisible(end);
    ensureVisible(start);
    setAnchorAndCursor(start, end);
    return true;
}

void BlockView::openFindBar()
{
    if (!findBar) {
        findBar = new BlockViewFindBar(this);
        connect(findBar, &BlockViewFindBar::findRequested, this, &BlockView::findFromBar);
        connect(findBar, &BlockViewFindBar::closed, this, &BlockView::closeFindBar);
        finder = new BlockViewFinder(this);
        connect(finder, &BlockViewFinder::found, this, &BlockView::foundFromBar);
        connect(finder, &BlockViewFinder::progress, findBar,
                [this](int percent) { findBar->setStatus(tr("Searching: %1 %").arg(percent)); });
    }
    const bool oneLine = hasSelection() && selectionStart().line == selectionEnd().line &&
                         selectionBytes() <= findBarTextMax;
    findBar->open(oneLine ? selectedText() : QString());
    placeFindBar();
}

// The bar sits under the text, above the horizontal scroll bar.
void BlockView::placeFindBar()
{
    const int height = findBar && !findBar->isHidden() ? findBar->sizeHint().height() : 0;
    if (viewportMargins().bottom() != height)
        setViewportMargins(0, 0, 0, height);
    if (height > 0) {
        const QRect area = viewport()->geometry();
        findBar->setGeometry(area.left(), area.bottom() + 1, area.width(), height);
    }
}

void BlockView::findFromBar(bool backward)
{
    stopFinding();
    findBar->setStatus({});
    const QString needle = findBar->text();
    if (needle.isEmpty())
        return;
    findingSize = needle.size();
    findingBackward = backward;
    const Pos from = findStart(backward);
    finder->start(text, needle, findBar->caseSensitive() ? Qt::CaseSensitive : Qt::CaseInsensitive,
                  from.line, from.column, backward);
}

void BlockView::foundFromBar(const BlockViewSearch::Hit& hit)
{
    QString status;
    if (!showFound(hit, findingSize))
        status = tr("Not found");
    else if (lastFindWrapped)
        status = findingBackward ? tr("Continued from the end") : tr("Continued from the start");
    findBar->setStatus(status);
}

void BlockView::stopFinding()
{
    if (!finder || !finder->isRunning())
        return;
    finder->stop();
    findBar->setStatus({});
}

void BlockView::findAgain(bool backward)
{
    if (!findBar || findBar->text().isEmpty()) {
        openFindBar();
        return;
    }
    if (findBar->isHidden()) {
        findBar->show();
        placeFindBar();
    }
    findFromBar(backward);
}

void BlockView::closeFindBar()
{
    stopFinding();
    findBar->hide();
    placeFindBar();
    setFocus(Qt::OtherFocusReason);
}
