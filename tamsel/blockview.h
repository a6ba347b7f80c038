#pragma once

#include "blocktext.h"

#include <QAbstractScrollArea>

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
    // Finds the text from the cursor on (or back); selects and shows it.
    bool find(const QString& text, bool backward = false, bool caseSensitive = false);

public slots:
    void selectAll();
    void copy();
};
