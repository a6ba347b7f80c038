// libFuzzer target for a block's columns, the table's sort and the plot's
// numbers, on any bytes taken as a block's data lines. What must hold:
// - every cell of a line that fits is at most its column's width, and a
//   number read from a cell is what the cell says (no value without one);
// - a sort by any column, and back to the text's order, keeps every line
//   exactly once;
// - the extent of the finite points holds them all; padding it, widening
//   it and a tick step stay finite, and a padded log range stays above 0;
// - the decimators keep indices in range and in series order, each
//   pixel column's lowest and highest point, and a point in every pixel
//   that has one;
// - the mode split starts in order, inside the block, never more modes
//   than the block has lines.
//
// Input: the first byte picks the layout (its value modulo 29), the second
// the columns plotted and the pixels; the rest is the block's text.
#include "blockview/blockmodes.h"
#include "blockview/blockplotdecimator.h"
#include "blockview/blockplotrange.h"
#include "blockview/blocktablemodel.h"
#include "require.h"

#include <cmath>
#include <cstdint>
#include <set>

namespace
{

void checkColumns(const BlockColumns& columns)
{
    double value;
    for (qsizetype line = 0; line < columns.lineCount(); ++line) {
        if (!columns.fits(line))
            continue;
        for (int c = 0; c < columns.columnCount(); ++c) {
            require(columns.cell(line, c).size() <= columns.width(c), "cell within its column");
            const bool isNumber = columns.number(line, c, value);
            require(!isNumber || !columns.cell(line, c).isEmpty(), "a number from an empty cell");
        }
    }
}

void checkSort(const BlockText& text, const BlockLayout& layout, int column)
{
    BlockTableModel model(text, layout);
    for (int c : {column, -1}) {
        model.sort(c, column % 2 ? Qt::DescendingOrder : Qt::AscendingOrder);
        std::set<qsizetype> seen;
        for (int row = 0; row < model.totalRows(); ++row)
            seen.insert(model.lineOf(row));
        require(qsizetype(seen.size()) == text.lineCount(), "every line once after a sort");
    }
}

void checkRange(const std::vector<QPointF>& points, int pixels)
{
    const auto [xs, ys] = BlockPlotRange::extent(points, 0, qsizetype(points.size()));
    for (const QPointF& p : points)
        require(p.x() >= xs.first && p.x() <= xs.second && p.y() >= ys.first && p.y() <= ys.second,
                "extent holds every point");
    for (const auto& span : {xs, ys}) {
        const auto padded = BlockPlotRange::padded(span, false);
        require(std::isfinite(padded.first) && std::isfinite(padded.second) &&
                    padded.first <= span.first && padded.second >= span.second,
                "padding finite and around the span");
        const double step = BlockPlotRange::tickStep(padded, pixels, 40);
        require(std::isfinite(step) && step > 0, "a finite tick step");
        require(std::isfinite(BlockPlotRange::widened(padded, step, pixels).second),
                "widened span finite");
        (void)BlockPlotRange::labelFormat(padded, step);
        if (span.first > 0)
            require(BlockPlotRange::padded(span, true).first > 0, "log range above 0");
    }
}

void checkDecimators(const std::vector<QPointF>& points, int pixels)
{
    const qsizetype n = qsizetype(points.size());
    const auto [xs, ys] = BlockPlotRange::extent(points, 0, n);
    const std::vector<qsizetype> kept =
        BlockPlotDecimator::minMax(points, 0, n, xs.first, xs.second, pixels);
    for (size_t i = 0; i < kept.size(); ++i)
        require(kept[i] >= 0 && kept[i] < n && (i == 0 || kept[i] > kept[i - 1]),
                "min-max indices in range and order");
    if (n) { // the lowest and highest of all stay
        double low = INFINITY, high = -INFINITY;
        for (qsizetype i : kept)
            low = std::min(low, points[size_t(i)].y()),
            high = std::max(high, points[size_t(i)].y());
        require(low == ys.first && high == ys.second, "extremes kept");
    }
    const QRectF area(QPointF(xs.first, ys.first), QPointF(xs.second, ys.second));
    const std::vector<qsizetype> perPixel =
        BlockPlotDecimator::perPixel(points, 0, n, area, QSize(pixels, pixels));
    for (qsizetype i : perPixel)
        require(i >= 0 && i < n, "per-pixel indices in range");
    const bool finiteArea = std::isfinite(area.width()) && std::isfinite(area.height());
    require(n == 0 || area.isEmpty() || !finiteArea || !perPixel.empty(),
            "a point where there are points");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    const BlockLayout& layout = blockLayouts[data[0] % blockLayoutCount];
    const int pick = data[1];
    const BlockText text = BlockText::fromString(
        QString::fromUtf8(reinterpret_cast<const char*>(data) + 2, qsizetype(size) - 2));
    const BlockColumns columns(text, layout);
    checkColumns(columns);
    if (columns.columnCount() < 2)
        return 0;
    const int xc = pick % columns.columnCount(), yc = (pick / 8) % columns.columnCount();
    checkSort(text, layout, yc);

    std::vector<QPointF> points;
    double x, y;
    for (qsizetype line = 0; line < columns.lineCount(); ++line)
        if (columns.number(line, xc, x) && columns.number(line, yc, y) && std::isfinite(x) &&
            std::isfinite(y))
            points.emplace_back(x, y);
    const int pixels = 1 + pick % 50;
    checkRange(points, pixels);
    checkDecimators(points, pixels);

    const BlockModes modes(columns);
    require(!modes.modes().empty() &&
                qsizetype(modes.modes().size()) <= std::max<qsizetype>(1, text.lineCount()),
            "no more modes than lines");
    for (size_t m = 1; m < modes.modes().size(); ++m)
        require(modes.modes()[m].firstLine > modes.modes()[m - 1].firstLine, "modes in order");
    return 0;
}
