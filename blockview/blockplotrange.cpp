#include "blockplotrange.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace
{

// Half the width: never overflows, where high - low can.
double halfWidth(BlockPlotRange::Span span)
{
    return span.second / 2 - span.first / 2;
}

double clampFinite(double value)
{
    return std::clamp(value, -DBL_MAX, DBL_MAX);
}

} // namespace

std::pair<BlockPlotRange::Span, BlockPlotRange::Span>
BlockPlotRange::extent(const std::vector<QPointF>& points, qsizetype begin, qsizetype end)
{
    double x0 = INFINITY, x1 = -INFINITY, y0 = INFINITY, y1 = -INFINITY;
    for (qsizetype i = begin; i < end; ++i) {
        const QPointF& p = points[size_t(i)];
        if (!std::isfinite(p.x()) || !std::isfinite(p.y()))
            continue;
        x0 = std::min(x0, p.x()), x1 = std::max(x1, p.x());
        y0 = std::min(y0, p.y()), y1 = std::max(y1, p.y());
    }
    if (x0 > x1)
        return {{0, 0}, {0, 0}};
    return {{x0, x1}, {y0, y1}};
}

BlockPlotRange::Span BlockPlotRange::padded(Span span, bool log)
{
    auto [low, high] = span;
    if (log) {
        // A decade's third on either side; a single value gets a decade.
        const double factor = high > low ? 1.5 : 10;
        return {std::max(low / factor, DBL_MIN), clampFinite(high * factor)};
    }
    const double half = halfWidth(span);
    const double margin = half > 0 ? half * 0.08 : std::max(std::abs(low) * 0.1, 1.0);
    return {clampFinite(low - margin), clampFinite(high + margin)};
}

BlockPlotRange::Span BlockPlotRange::widened(Span span, double units, int pixels)
{
    const double middle = span.first / 2 + span.second / 2;
    const double half = std::max(halfWidth(span), units / 2 * std::max(pixels, 1));
    return {clampFinite(middle - half), clampFinite(middle + half)};
}

double BlockPlotRange::tickStep(Span span, int pixels, int spacing)
{
    const double ticks = std::max(1.0, double(std::max(pixels, 1)) / std::max(spacing, 1));
    const double rough = halfWidth(span) / ticks * 2;
    if (!(rough > 0) || !std::isfinite(rough))
        return 1;
    const double decade = std::pow(10.0, std::floor(std::log10(rough)));
    for (double factor : {1.0, 2.0, 5.0, 10.0}) {
        const double step = factor * decade;
        if (!std::isfinite(step)) // at the end of a double's range
            return rough;
        if (step >= rough)
            return step;
    }
    return rough;
}

QString BlockPlotRange::labelFormat(Span span, double step)
{
    const double largest = std::max(std::abs(span.first), std::abs(span.second));
    if (step >= 1 && std::floor(step) == step && largest < 1e9)
        return "%.0f";
    if (step >= 1e-4 && largest < 1e6) {
        const int decimals = std::clamp(int(std::ceil(-std::log10(step) - 1e-9)), 0, 4);
        return QString("%.%1f").arg(decimals);
    }
    // Enough digits that neighbouring ticks read apart.
    const double ratio = largest > 0 && step > 0 ? largest / step : 1;
    const int digits = std::clamp(int(std::ceil(std::log10(ratio))), 1, 6);
    return QString("%.%1e").arg(digits);
}

double BlockPlotRange::firstTick(double low, double step)
{
    const double tick = std::ceil(low / step) * step;
    return std::isfinite(tick) ? tick : low;
}
