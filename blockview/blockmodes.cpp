#include "blockmodes.h"

#include <QRegularExpression>

BlockModes::BlockModes(const BlockColumns& columns)
{
    if (byHeadings(columns) || byRepeatedIds(columns))
        return;
    found = {{0, "Mode 1"}};
    sure = false;
}

int BlockModes::headingNumber(const QString& line)
{
    static const QRegularExpression heading("^\\s*mode\\s+(\\d{1,9})\\b",
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = heading.match(line);
    return match.hasMatch() ? match.captured(1).toInt() : 0;
}

bool BlockModes::byHeadings(const BlockColumns& columns)
{
    for (qsizetype line = 0; line < columns.lineCount(); ++line) {
        if (columns.fits(line))
            continue;
        if (const int number = headingNumber(columns.cell(line, 0)))
            found.push_back({line, QString("Mode %1").arg(number)});
    }
    return !found.empty();
}

// Without headings, the rows of n modes of the same nodes are n equal runs
// of node IDs; one run of IDs that never repeat is one mode.
bool BlockModes::byRepeatedIds(const BlockColumns& columns)
{
    std::vector<double> firstRun;
    std::vector<qsizetype> starts;
    qsizetype row = 0;
    double id;
    for (qsizetype line = 0; line < columns.lineCount(); ++line) {
        if (!columns.fits(line))
            continue;
        if (!columns.number(line, 0, id))
            return false;
        if (starts.empty() || (starts.size() == 1 && id != firstRun.front())) {
            if (starts.empty())
                starts.push_back(line);
            firstRun.push_back(id);
        } else {
            const size_t at = size_t(row) % firstRun.size();
            if (id != firstRun[at])
                return false;
            if (at == 0)
                starts.push_back(line);
        }
        ++row;
    }
    if (starts.empty() || row % qsizetype(firstRun.size()) != 0)
        return false;
    for (size_t m = 0; m < starts.size(); ++m)
        found.push_back({starts[m], QString("Mode %1").arg(m + 1)});
    return true;
}
