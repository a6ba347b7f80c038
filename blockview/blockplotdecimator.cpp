#include "blockplotdecimator.h"

#include <algorithm>
#include <cmath>

namespace
{

// The lowest and highest point of one pixel column, in series order.
struct Column {
    qsizetype low = -1, high = -1;

    void take(const std::vector<QPointF>& points, qsizetype i)
    {
        if (low < 0)
            low = high = i;
        if (points[size_t(i)].y() < points[size_t(low)].y())
            low = i;
        if (points[size_t(i)].y() > points[size_t(high)].y())
            high = i;
    }
    void flush(std::vector<qsizetype>& out)
    {
        if (low < 0)
            return;
        out.push_back(std::min(low, high));
        if (high != low)
            out.push_back(std::max(low, high));
        low = -1;
    }
};

} // namespace

std::vector<qsizetype> BlockPlotDecimator::minMax(const std::vector<QPointF>& points,
                                                  qsizetype begin, qsizetype end, double x0,
                                                  double x1, int columns)
{
    std::vector<qsizetype> out;
    columns = std::max(columns, 1);
    // In halves: x1 - x0 overflows for a span near a double's range.
    const double half = x1 / 2 - x0 / 2;
    const double scale = half > 0 ? columns / half : 0;
    const auto inside = [&](qsizetype i) {
        const double x = points[size_t(i)].x();
        return x >= x0 && x <= x1;
    };
    Column column;
    qsizetype bucket = -1;
    for (qsizetype i = begin; i < end; ++i) {
        if (!inside(i)) {
            column.flush(out);
            bucket = -1;
            if ((i > begin && inside(i - 1)) || (i + 1 < end && inside(i + 1)))
                out.push_back(i);
            continue;
        }
        const auto b = std::min<qsizetype>(qsizetype((points[size_t(i)].x() / 2 - x0 / 2) * scale),
                                           columns - 1);
        if (b != bucket) {
            column.flush(out);
            bucket = b;
        }
        column.take(points, i);
    }
    column.flush(out);
    return out;
}

std::vector<qsizetype> BlockPlotDecimator::perPixel(const std::vector<QPointF>& points,
                                                    qsizetype begin, qsizetype end,
                                                    const QRectF& area, QSize pixels)
{
    std::vector<qsizetype> out;
    const int w = std::max(pixels.width(), 1), h = std::max(pixels.height(), 1);
    std::vector<bool> taken(size_t(w) * size_t(h));
    for (qsizetype i = begin; i < end; ++i) {
        const QPointF& p = points[size_t(i)];
        // Where in the area, from 0 to 1; never true for NaN.
        const double fx = (p.x() / 2 - area.left() / 2) / (area.width() / 2);
        const double fy = (p.y() / 2 - area.top() / 2) / (area.height() / 2);
        if (!(fx >= 0 && fx <= 1 && fy >= 0 && fy <= 1))
            continue;
        const int px = std::min(int(fx * w), w - 1);
        const int py = std::min(int(fy * h), h - 1);
        const size_t cell = size_t(py) * size_t(w) + size_t(px);
        if (!taken[cell]) {
            taken[cell] = true;
            out.push_back(i);
        }
    }
    return out;
}
