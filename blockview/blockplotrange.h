#pragma once

#include <QPointF>
#include <QString>

#include <utility>
#include <vector>

// The numbers behind a plot's axes, worked out without overflow for any
// finite values (+-1e308 included): the data's extent, some room around
// it, a tick step that leaves each label its room, and one label format
// for a whole axis.
class BlockPlotRange
{
public:
    using Span = std::pair<double, double>;

    // The extent of x (first) and y over points[begin, end): finite values
    // only; {0, 0} when there are none.
    static std::pair<Span, Span> extent(const std::vector<QPointF>& points, qsizetype begin,
                                        qsizetype end);
    // Some room on both sides, within what a double holds; a single value
    // gets a range around it. On a log axis low must be above 0.
    static Span padded(Span span, bool log);
    // Widens the span about its middle to `units` a pixel, no further than
    // a double holds.
    static Span widened(Span span, double units, int pixels);
    // A step of 1, 2 or 5 times a power of ten that leaves at least
    // `spacing` pixels between ticks over `pixels`.
    static double tickStep(Span span, int pixels, int spacing);
    // One printf format for every label of an axis with this step: whole
    // numbers as such, fixed decimals for moderate ones, else exponents.
    static QString labelFormat(Span span, double step);
    // The first tick at or above low.
    static double firstTick(double low, double step);
};
