#pragma once

#include <QAccessibleWidget>

class BlockView;

// What assistive technology reads of a block view: a read-only multi-line
// text whose characters are counted as in BlockView::toPlainText(), with the
// cursor, the selection and the text around an offset by character, word,
// sentence or line. Offsets work on the stored lines; the whole text is
// never built unless asked for.
class BlockViewAccessible : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit BlockViewAccessible(BlockView* view);
    // The factory QAccessible asks for an interface of each object.
    static QAccessibleInterface* create(const QString& key, QObject* object);

    void* interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text type) const override;

    void selection(int index, int* startOffset, int* endOffset) const override;
    int selectionCount() const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int index) override;
    void setSelection(int index, int startOffset, int endOffset) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int startOffset, int endOffset) const override;
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* startOffset,
                             int* endOffset) const override;
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* startOffset,
                            int* endOffset) const override;
    QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* startOffset,
                         int* endOffset) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int startIndex, int endIndex) override;
    QString attributes(int offset, int* startOffset, int* endOffset) const override;

private:
    BlockView* view() const;
    // The boundary item holding the character at offset, as [start, end).
    std::pair<qsizetype, qsizetype> itemAt(qsizetype offset,
                                           QAccessible::TextBoundaryType type) const;
    QString item(std::pair<qsizetype, qsizetype> range, int* startOffset, int* endOffset) const;
};
