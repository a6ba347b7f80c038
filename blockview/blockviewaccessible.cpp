#include "blockviewaccessible.h"

#include "blockview.h"

#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <climits>

namespace
{

// Beyond this the value (the whole text) is left empty: a million lines would
// cost hundreds of megabytes at every query; the text interface reads parts.
constexpr qsizetype valueLimit = 1 << 16;

int clampedInt(qsizetype value)
{
    return int(std::clamp<qsizetype>(value, INT_MIN, INT_MAX));
}

} // namespace

BlockViewAccessible::BlockViewAccessible(BlockView* view)
    : QAccessibleWidget(view, QAccessible::EditableText)
{
}

QAccessibleInterface* BlockViewAccessible::create(const QString& key, QObject* object)
{
    auto* view = qobject_cast<BlockView*>(object);
    return key == QLatin1String("BlockView") && view ? new BlockViewAccessible(view) : nullptr;
}

BlockView* BlockViewAccessible::view() const
{
    return static_cast<BlockView*>(widget());
}

void* BlockViewAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QAccessible::State BlockViewAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.editable = false;
    state.multiLine = true;
    state.selectableText = true;
    return state;
}

QString BlockViewAccessible::text(QAccessible::Text type) const
{
    // A view without a name of its own is named by the page it sits on.
    if (type == QAccessible::Name && view()->accessibleName().isEmpty())
        for (const QWidget* w = view()->parentWidget(); w && !w->isWindow(); w = w->parentWidget())
            if (!w->accessibleName().isEmpty())
                return w->accessibleName();
    if (type != QAccessible::Value)
        return QAccessibleWidget::text(type);
    return characterCount() <= valueLimit ? view()->toPlainText() : QString();
}

void BlockViewAccessible::selection(int index, int* startOffset, int* endOffset) const
{
    *startOffset = *endOffset = 0;
    if (index != 0 || !view()->hasSelection())
        return;
    *startOffset = view()->offsetOf(view()->selectionStart());
    *endOffset = view()->offsetOf(view()->selectionEnd());
}

int BlockViewAccessible::selectionCount() const
{
    return view()->hasSelection() ? 1 : 0;
}

void BlockViewAccessible::addSelection(int startOffset, int endOffset)
{
    setSelection(0, startOffset, endOffset);
}

void BlockViewAccessible::removeSelection(int index)
{
    if (index == 0)
        view()->setAnchorAndCursor(view()->caret.cursor(), view()->caret.cursor());
}

void BlockViewAccessible::setSelection(int index, int startOffset, int endOffset)
{
    if (index == 0)
        view()->setAnchorAndCursor(view()->posOf(startOffset), view()->posOf(endOffset));
}

int BlockViewAccessible::cursorPosition() const
{
    return view()->offsetOf(view()->caret.cursor());
}

void BlockViewAccessible::setCursorPosition(int position)
{
    view()->moveCursor(view()->posOf(position), false);
}

QString BlockViewAccessible::text(int startOffset, int endOffset) const
{
    if (startOffset > endOffset)
        return {};
    return view()->textBetween(view()->posOf(startOffset), view()->posOf(endOffset));
}

int BlockViewAccessible::characterCount() const
{
    return clampedInt(view()->text.characterCount());
}

std::pair<qsizetype, qsizetype>
BlockViewAccessible::itemAt(qsizetype offset, QAccessible::TextBoundaryType type) const
{
    const BlockText& text = view()->text;
    if (type == QAccessible::NoBoundary)
        return {0, text.characterCount()};
    const qsizetype line = text.lineAtOffset(offset);
    const qsizetype start = text.characterOffset(line);
    const qsizetype end = text.characterOffset(line + 1);
    // A line is given with its line feed, as Qt's own text views give it.
    if (type == QAccessible::LineBoundary || type == QAccessible::ParagraphBoundary)
        return {start, end};
    qsizetype around = 0;
    const QString shown = text.lineAround(line, offset - start, around);
    const int column = int(offset - start - around);
    if (column >= shown.size())
        return {offset, offset + 1}; // the line feed
    QTextBoundaryFinder finder(type == QAccessible::CharBoundary   ? QTextBoundaryFinder::Grapheme
                               : type == QAccessible::WordBoundary ? QTextBoundaryFinder::Word
                                                                   : QTextBoundaryFinder::Sentence,
                               shown);
    finder.setPosition(column + 1);
    const qsizetype from = std::max<qsizetype>(0, finder.toPreviousBoundary());
    finder.setPosition(column);
    const qsizetype to = finder.toNextBoundary();
    return {start + around + from, start + around + (to < 0 ? shown.size() : to)};
}

QString BlockViewAccessible::item(std::pair<qsizetype, qsizetype> range, int* startOffset,
                                  int* endOffset) const
{
    *startOffset = clampedInt(range.first);
    *endOffset = clampedInt(range.second);
    return text(*startOffset, *endOffset);
}

QString BlockViewAccessible::textAtOffset(int offset, QAccessible::TextBoundaryType type,
                                          int* startOffset, int* endOffset) const
{
    *startOffset = *endOffset = -1;
    const int count = characterCount();
    if (offset == -2)
        offset = cursorPosition();
    if (offset == -1)
        offset = count;
    if (offset < 0 || offset > count)
        return {};
    if (offset == count && type != QAccessible::NoBoundary) {
        *startOffset = *endOffset = offset;
        return {};
    }
    return item(itemAt(offset, type), startOffset, endOffset);
}

QString BlockViewAccessible::textBeforeOffset(int offset, QAccessible::TextBoundaryType type,
                                              int* startOffset, int* endOffset) const
{
    textAtOffset(offset, type, startOffset, endOffset);
    if (*startOffset <= 0 || type == QAccessible::NoBoundary) {
        *startOffset = *endOffset = -1;
        return {};
    }
    return item(itemAt(*startOffset - 1, type), startOffset, endOffset);
}

QString BlockViewAccessible::textAfterOffset(int offset, QAccessible::TextBoundaryType type,
                                             int* startOffset, int* endOffset) const
{
    textAtOffset(offset, type, startOffset, endOffset);
    if (*endOffset < 0 || *endOffset >= characterCount() || type == QAccessible::NoBoundary) {
        *startOffset = *endOffset = -1;
        return {};
    }
    return item(itemAt(*endOffset, type), startOffset, endOffset);
}

QRect BlockViewAccessible::characterRect(int offset) const
{
    BlockView* v = view();
    const BlockView::Pos at = v->clamped(v->posOf(offset));
    // Only what is in sight has extents: a screen reader asking for those of
    // a huge range must not lay out every line of it.
    if (at.line < v->firstLine() || at.line > v->firstLine() + v->visibleLines())
        return QRect();
    const int left = int(std::clamp<qreal>(v->textLeft() + v->xOf(at), INT_MIN / 2, INT_MAX / 2));
    const int right = int(std::clamp<qreal>(v->textLeft() + v->xOf({at.line, at.column + 1}),
                                            INT_MIN / 2, INT_MAX / 2));
    const QRect local(left, v->lineTop(at.line), std::max(1, right - left), v->lineSpacing);
    return QRect(v->viewport()->mapToGlobal(local.topLeft()), local.size());
}

int BlockViewAccessible::offsetAtPoint(const QPoint& point) const
{
    BlockView* v = view();
    const QPoint local = v->viewport()->mapFromGlobal(point);
    if (!v->viewport()->rect().contains(local))
        return -1;
    return v->offsetOf(v->posAt(local, true));
}

void BlockViewAccessible::scrollToSubstring(int startIndex, int endIndex)
{
    view()->ensureVisible(view()->posOf(endIndex));
    view()->ensureVisible(view()->posOf(startIndex));
}

QString BlockViewAccessible::attributes(int, int* startOffset, int* endOffset) const
{
    // One plain run: the text has no formatting.
    *startOffset = 0;
    *endOffset = characterCount();
    return {};
}
