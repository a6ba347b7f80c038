#pragma once

#include "blockcolumns.h"

#include <vector>

// Which mode each line of a block of per-mode node lists (Mode Shapes,
// Stress and Strain Modes) belongs to, so that a sorted row still says it.
// Held as where each mode starts: a few bytes a mode, none a line.
class BlockModes
{
public:
    // Layouts whose lines are nodes of one mode after another.
    static bool perMode(const BlockLayout& layout);
    // Empty unless the layout is one of those.
    BlockModes(const BlockColumns& columns, const BlockLayout& layout);

    bool isEmpty() const { return starts.empty(); }
    // 0 for a line before the first mode.
    int modeOf(qsizetype line) const;
    // Whether a line is no data line, seen on the way (false unless split).
    bool sawMisfits() const { return misfits; }

private:
    struct Start {
        qsizetype line;
        int mode;
    };
    void split(const BlockColumns& columns);

    std::vector<Start> starts;
    bool misfits = false;
};
