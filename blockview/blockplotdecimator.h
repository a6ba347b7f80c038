#pragma once

#include <QPointF>
#include <QRectF>
#include <QSize>

#include <vector>

// Picks the few points of a long series that a plot of some pixels can
// show, as indices into the series. What a pixel column or pixel shows
// stays the same: its lowest and highest point are always kept.
class BlockPlotDecimator
{
public:
    // For a line over x: per pixel column of [x0, x1] its lowest and
    // highest point, in series order. A point outside the range is
    // kept only next to one inside, so lines run on to the edge.
    static std::vector<qsizetype> minMax(const std::vector<QPointF>& points, qsizetype begin,
                                         qsizetype end, double x0, double x1, int columns);
    // For points on their own: the first point in each pixel of area.
    static std::vector<qsizetype> perPixel(const std::vector<QPointF>& points, qsizetype begin,
                                           qsizetype end, const QRectF& area, QSize pixels);
};
