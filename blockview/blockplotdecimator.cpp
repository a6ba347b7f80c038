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
    const double scale = x1 > x0 ? columns / (x1 - x0) : 0;
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
        const auto b =
            std::min<qsizetype>(qsizetype((points[size_t(i)].x() - x0) * scale), columns - 1);
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
        if (!area.contains(p))
            continue;
        const int px = std::min(int((p.x() - area.left()) / area.width() * w), w - 1);
        const int py = std::min(int((p.y() - area.top()) / area.height() * h), h - 1);
        const size_t cell = size_t(py) * size_t(w) + size_t(px);
        if (!taken[cell]) {
            taken[cell] = true;
            out.push_back(i);
        }
    }
    return out;
}
