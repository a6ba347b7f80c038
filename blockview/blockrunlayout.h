#pragma once

#include "blocktext.h"

#include <QFont>

#include <functional>
#include <map>
#include <memory>

class QPaintDevice;
class QTextLayout;

// Where a block's characters go across its lines, without a widget. A short
// line is laid out as one run; a long one in runs of runColumns UTF-16
// units, each placed as if every unit took a column of the fixed-pitch font,
// so that only the runs in sight are ever laid out. A run is laid out when
// first asked for and kept while few enough others are.
class BlockRunLayout
{
public:
    static constexpr qsizetype runColumns = 1024;

    // The text must outlive the layout, or be replaced first.
    void setText(const BlockText* text);
    // Measures a column and forgets every run laid out.
    void setFont(const QFont& font, QPaintDevice* device = nullptr);
    // How many runs are kept before all are laid out anew.
    void setCacheLimit(qsizetype runs) { cacheLimit = runs; }
    // Called when a run wider than every one before is laid out.
    void setWidthListener(std::function<void()> listener) { widthListener = std::move(listener); }

    const BlockText& text() const { return *blockText; }
    qreal columnWidth() const { return column; }
    // The widest line laid out so far, in pixels; a long line counts whole.
    qreal widest() const { return widestSeen; }

    qsizetype runCount(qsizetype line) const;
    // The run holding the place before a column; the last run holds the end.
    qsizetype runOf(qsizetype line, qsizetype column) const;
    // The run under x, counted from the line's start.
    qsizetype runAtX(qsizetype line, qreal x) const;
    static qsizetype runStart(qsizetype run) { return run * runColumns; }
    qreal runX(qsizetype run) const { return qreal(run) * runColumns * column; }
    const QTextLayout& layoutOf(qsizetype line, qsizetype run = 0);

    // x of the place before a column, from the line's start.
    qreal xOf(qsizetype line, qsizetype column);
    // The column at x: between characters, or the one under x.
    qsizetype columnAt(qsizetype line, qreal x, bool onCharacter = false);
    // The next (or previous) place a caret may stop in the line, a whole
    // cluster or word on; at the line's end (or start) it stays.
    qsizetype nextStop(qsizetype line, qsizetype column, bool words);
    qsizetype previousStop(qsizetype line, qsizetype column, bool words);

private:
    std::unique_ptr<QTextLayout> makeLayout(qsizetype line, qsizetype run);
    void noteWidth(qreal width);

    static const BlockText empty;
    const BlockText* blockText = &empty;
    QFont font;
    QPaintDevice* device = nullptr;
    qreal column = 1;
    qreal widestSeen = 0;
    qsizetype cacheLimit = 512;
    std::function<void()> widthListener;
    std::map<std::pair<qsizetype, qsizetype>, std::unique_ptr<QTextLayout>> layouts;
};
