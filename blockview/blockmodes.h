#pragma once

#include "blockcolumns.h"

#include <vector>

// Where each mode of a block written mode by mode (Mode Shapes, Stress and
// Strain Modes) begins. The report heads each mode with a line "Mode <n>";
// a report without such lines is split only where its rows fall into equal
// runs of the same node IDs, and otherwise is not split: known() is false.
class BlockModes
{
public:
    struct Mode {
        qsizetype firstLine;
        QString name;
    };

    explicit BlockModes(const BlockColumns& columns);

    // In line order; one mode covering all lines when the split is unknown.
    const std::vector<Mode>& modes() const { return found; }
    bool known() const { return sure; }

    // The number in a heading line such as "  Mode  12", else 0.
    static int headingNumber(const QString& line);

private:
    bool byHeadings(const BlockColumns& columns);
    bool byRepeatedIds(const BlockColumns& columns);

    std::vector<Mode> found;
    bool sure = true;
};
