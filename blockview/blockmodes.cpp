#include "blockmodes.h"

#include <QRegularExpression>

#include <algorithm>
#include <cstring>

bool BlockModes::perMode(const BlockLayout& layout)
{
    const char* first = layout.columnTitles[0];
    return layout.columnCount == 7 && first && std::strcmp(first, "ID") == 0;
}

BlockModes::BlockModes(const BlockColumns& columns, const BlockLayout& layout)
{
    if (perMode(layout))
        split(columns);
}

// A heading that names its mode starts it. A report without such headings
// is cut where the node ID falls back, which is right while each mode lists
// its nodes in ascending order.
void BlockModes::split(const BlockColumns& columns)
{
    static const QRegularExpression heading(R"(\bmode\s*(\d+))",
                                            QRegularExpression::CaseInsensitiveOption);
    std::vector<Start> headed, fallen;
    double previous = 0;
    for (qsizetype line = 0; line < columns.lineCount(); ++line) {
        if (const std::optional<double> id = columns.numberAt(line, 0)) {
            if (fallen.empty() || *id <= previous)
                fallen.push_back({line, int(fallen.size()) + 1});
            previous = *id;
        } else if (!columns.fits(line)) {
            misfits = true;
            const QRegularExpressionMatch named = heading.match(columns.misfit(line));
            if (named.hasMatch())
                headed.push_back({line, named.captured(1).toInt()});
        }
    }
    starts = headed.empty() ? std::move(fallen) : std::move(headed);
}

int BlockModes::modeOf(qsizetype line) const
{
    const auto after = std::upper_bound(starts.begin(), starts.end(), line,
                                        [](qsizetype at, const Start& s) { return at < s.line; });
    return after == starts.begin() ? 0 : std::prev(after)->mode;
}
