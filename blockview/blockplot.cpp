#include "blockplot.h"

#include "blockchartview.h"
#include "blockfilewriter.h"
#include "blockmodes.h"
#include "blockplotdecimator.h"
#include "blockplotrange.h"
#include "blockplotrangedialog.h"

#include <QBuffer>
#include <QChart>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLegend>
#include <QLegendMarker>
#include <QLineSeries>
#include <QLogValueAxis>
#include <QMenu>
#include <QPainter>
#include <QPdfWriter>
#include <QPushButton>
#include <QScatterSeries>
#include <QSvgGenerator>
#include <QTimer>
#include <QToolTip>
#include <QVBoxLayout>
#include <QValueAxis>

#include <cmath>

namespace
{

// A chart gets at most this many series; the note says what is left out.
constexpr int maxSeries = 64;
const char* const projections[] = {"x\u2013y", "x\u2013z", "y\u2013z"};
const int projectionColumns[3][2] = {{0, 1}, {0, 2}, {1, 2}};

// Twelve colours told apart on light and dark ground, also by most
// colour-blind eyes; a thirteenth series starts over.
const QRgb seriesColours[12] = {0x1f77b4, 0xff7f0e, 0x2ca02c, 0xd62728, 0x9467bd, 0x8c564b,
                                0xe377c2, 0x7f7f7f, 0xbcbd22, 0x17becf, 0xff9896, 0xffd700};

BlockPlotRange::Span rangeOf(const QAbstractAxis* axis)
{
    if (const auto* log = qobject_cast<const QLogValueAxis*>(axis))
        return {log->min(), log->max()};
    const auto* linear = static_cast<const QValueAxis*>(axis);
    return {linear->min(), linear->max()};
}

void setRange(QAbstractAxis* axis, BlockPlotRange::Span span)
{
    if (span.second > span.first)
        axis->setRange(span.first, span.second);
}

// Markers without a border, smaller where there are many, so that close
// points do not paint over each other.
qreal markerSize(size_t points)
{
    return points > 5000 ? 3 : points > 500 ? 5 : 8;
}

} // namespace

BlockPlot::BlockPlot(const BlockText& text, const BlockLayout& layout, const Setup& plotSetup,
                     QWidget* parent)
    : QWidget(parent), cols(text, layout), setup(plotSetup), xColumn(plotSetup.xColumn),
      yColumn(plotSetup.yColumn), noteLabel(new QLabel), view(new BlockChartView(new QChart))
{
    setObjectName("plot page");
    double value;
    if (setup.kind != Setup::Projection && xColumn >= 0) {
        // A column without numbers (names, say) leaves the row as x.
        qsizetype line = 0;
        while (line < cols.lineCount() && !cols.fits(line))
            ++line;
        if (line == cols.lineCount() || !cols.number(line, xColumn, value))
            xColumn = -1;
    }
    if (yColumn < 0 || yColumn >= cols.columnCount())
        yColumn = firstVaryingColumn();
    noteLabel->setObjectName("plot note");
    noteLabel->setWordWrap(true);
    noteLabel->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
    box->addWidget(makeControls());
    box->addWidget(view, 1);
    box->addWidget(noteLabel);
    connect(view, &BlockChartView::resetRequested, this, &BlockPlot::resetZoom);
    connect(view, &BlockChartView::hovered, this, &BlockPlot::showToolTip);
    connect(view, &BlockChartView::menuRequested, this, &BlockPlot::popupMenu);
    connect(chart(), &QChart::plotAreaChanged, this, &BlockPlot::redrawSoon);
    collect();
    rebuildChart();
}

BlockPlot::~BlockPlot() = default;

QChart* BlockPlot::chart() const
{
    return view->chart();
}

QString BlockPlot::note() const
{
    return noteLabel->text();
}

QWidget* BlockPlot::makeControls()
{
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    choice = new QComboBox;
    if (setup.kind == Setup::Projection) {
        for (const char* name : projections)
            choice->addItem(QString::fromUtf8(name));
        choice->setAccessibleName("Projection");
    } else {
        for (int column = 0; column < cols.columnCount(); ++column)
            if (column != xColumn)
                choice->addItem(cols.title(column), column);
        choice->setCurrentIndex(choice->findData(yColumn));
        choice->setAccessibleName("Column plotted");
    }
    auto* label = new QLabel(setup.kind == Setup::Projection ? "&Projection:" : "&Column:");
    label->setBuddy(choice);
    row->addWidget(label);
    row->addWidget(choice);
    connect(choice, &QComboBox::activated, this, &BlockPlot::setChoice);
    if (setup.kind != Setup::Projection) {
        logBox = new QCheckBox("&Log scale");
        logBox->setChecked(setup.logY);
        row->addWidget(logBox);
        connect(logBox, &QCheckBox::toggled, this, &BlockPlot::setLogScale);
    }
    row->addStretch(1);
    auto* ranges = new QPushButton("Axis &Ranges…");
    ranges->setObjectName("axis ranges");
    row->addWidget(ranges);
    connect(ranges, &QPushButton::clicked, this, &BlockPlot::askRanges);
    auto* save = new QPushButton("&Save Plot…");
    save->setObjectName("save plot");
    row->addWidget(save);
    connect(save, &QPushButton::clicked, this, &BlockPlot::saveAs);
    return bar;
}

bool BlockPlot::finiteCell(qsizetype line, int column, double& value) const
{
    return cols.number(line, column, value) && std::isfinite(value);
}

// The first column beside x whose numbers are not all the same over the
// whole block: a flat one (a rigid-body mode's ones, zeros) says nothing.
int BlockPlot::firstVaryingColumn() const
{
    int numeric = -1;
    for (int column = 0; column < cols.columnCount(); ++column) {
        if (column == xColumn)
            continue;
        double first = NAN, value;
        for (qsizetype line = 0; line < cols.lineCount(); ++line) {
            if (!finiteCell(line, column, value))
                continue;
            if (std::isnan(first))
                first = value;
            else if (value != first)
                return column;
        }
        if (numeric < 0 && !std::isnan(first))
            numeric = column;
    }
    if (numeric >= 0)
        return numeric;
    return xColumn == 1 || cols.columnCount() < 2 ? 0 : 1;
}

void BlockPlot::setChoice(int index)
{
    if (setup.kind == Setup::Projection)
        projection = qBound(0, index, 2);
    else
        yColumn = choice->itemData(index).toInt();
    choice->setCurrentIndex(index);
    collect();
    rebuildChart();
}

void BlockPlot::setLogScale(bool on)
{
    setup.logY = on;
    if (logBox)
        logBox->setChecked(on);
    rebuildChart();
}

void BlockPlot::collect()
{
    points.clear();
    lines.clear();
    runs.clear();
    skippedRows = 0;
    const bool projecting = setup.kind == Setup::Projection;
    const int xc = projecting ? setup.xColumn + projectionColumns[projection][0] : xColumn;
    const int yc = projecting ? setup.xColumn + projectionColumns[projection][1] : yColumn;
    std::vector<BlockModes::Mode> modes = {{0, columnName(Qt::Vertical)}};
    if (setup.splitRuns) {
        const BlockModes found(cols);
        modes = found.modes();
        modesKnown = found.known();
    }
    modeCount = qsizetype(modes.size());
    qsizetype stop = cols.lineCount(); // where the first mode left out begins
    if (modes.size() > size_t(maxSeries)) {
        stop = modes[maxSeries].firstLine;
        modes.resize(maxSeries);
    }
    size_t mode = 0;
    double x, y;
    qsizetype row = 0;
    for (qsizetype line = modes.front().firstLine; line < stop; ++line) {
        while (mode < modes.size() && line >= modes[mode].firstLine)
            runs.push_back({qsizetype(points.size()), 0, modes[mode++].name});
        // A number proves the line is data: the common case asks once.
        const bool yValue = cols.number(line, yc, y);
        if (!yValue && !cols.fits(line))
            continue;
        ++row;
        if (xc < 0)
            x = double(row);
        if (!yValue || !std::isfinite(y) || (xc >= 0 && !finiteCell(line, xc, x))) {
            ++skippedRows;
            continue;
        }
        points.emplace_back(x, y);
        lines.push_back(line);
    }
    for (size_t r = 0; r < runs.size(); ++r)
        runs[r].end = r + 1 < runs.size() ? runs[r + 1].begin : qsizetype(points.size());
    scaleHuge();
}

bool BlockPlot::logShown() const
{
    if (!setup.logY || setup.kind == Setup::Projection)
        return false;
    for (const QPointF& p : points)
        if (p.y() > 0)
            return true;
    return false;
}

QString BlockPlot::columnName(Qt::Orientation orientation) const
{
    const int index = orientation == Qt::Horizontal ? 0 : 1;
    if (setup.kind == Setup::Projection)
        return QString::fromUtf8(projections[projection]).split(QChar(0x2013))[index];
    const int column = index == 0 ? xColumn : yColumn;
    return column < 0 ? QString("Row") : cols.title(column);
}

QString BlockPlot::axisTitle(Qt::Orientation orientation) const
{
    const int exponent = scaleExponent[orientation == Qt::Horizontal ? 0 : 1];
    const QString name = columnName(orientation);
    return exponent ? QString("%1 (\u00d71e%2)").arg(name).arg(exponent) : name;
}

// Values near the ends of a double are plotted in units of a power of ten:
// the chart works out spans that would overflow there.
void BlockPlot::scaleHuge()
{
    scaleExponent[0] = scaleExponent[1] = 0;
    const auto [xs, ys] = BlockPlotRange::extent(points, 0, qsizetype(points.size()));
    const auto exponentOf = [](BlockPlotRange::Span span) {
        const double largest = std::max(std::abs(span.first), std::abs(span.second));
        return largest > 1e100 ? int(std::floor(std::log10(largest))) : 0;
    };
    scaleExponent[0] = exponentOf(xs);
    scaleExponent[1] = exponentOf(ys);
    if (setup.kind == Setup::Projection) // one scale across and up
        scaleExponent[0] = scaleExponent[1] = std::max(scaleExponent[0], scaleExponent[1]);
    if (!scaleExponent[0] && !scaleExponent[1])
        return;
    const double sx = std::pow(10.0, -scaleExponent[0]), sy = std::pow(10.0, -scaleExponent[1]);
    for (QPointF& p : points)
        p = {p.x() * sx, p.y() * sy};
}

QAbstractAxis* BlockPlot::makeAxis(Qt::Orientation orientation) const
{
    QAbstractAxis* axis;
    if (orientation == Qt::Vertical && logShown()) {
        auto* log = new QLogValueAxis;
        log->setMinorTickCount(0);
        axis = log;
    } else {
        auto* linear = new QValueAxis;
        linear->setTickType(QValueAxis::TicksDynamic);
        linear->setMinorTickCount(0);
        axis = linear;
    }
    axis->setTitleText(axisTitle(orientation));
    return axis;
}

QXYSeries* BlockPlot::makeSeries(size_t run) const
{
    QXYSeries* series;
    if (setup.kind == Setup::Lines) {
        series = new QLineSeries;
    } else {
        auto* scatter = new QScatterSeries;
        scatter->setMarkerSize(markerSize(points.size()));
        series = scatter;
    }
    series->setName(runs[run].name);
    return series;
}

// Qt's light or dark theme, as the palette is, with the plot's own colours.
void BlockPlot::applyTheme()
{
    const bool dark = palette().color(QPalette::Window).lightness() < 128;
    chart()->setTheme(dark ? QChart::ChartThemeDark : QChart::ChartThemeLight);
    for (size_t r = 0; r < runSeries.size(); ++r) {
        QXYSeries* series = runSeries[r];
        const bool clamped = series == clampedSeries;
        const QColor colour(clamped ? 0xd62728 : seriesColours[r % 12]);
        const qsizetype count = clamped ? clampedCount : runs[r].end - runs[r].begin;
        // Thin lines draw fast; a scatter marker has no border to paint
        // over its neighbours.
        series->setPen(series->type() == QAbstractSeries::SeriesTypeLine
                           ? QPen(colour, count > 20000 ? 0 : 2)
                           : QPen(Qt::NoPen));
        series->setColor(colour);
    }
    fitLegend(); // a theme brings its own fonts
}

void BlockPlot::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTheme();
}

void BlockPlot::rebuildChart()
{
    QChart* c = chart();
    c->removeAllSeries();
    runSeries.clear();
    clampedSeries = nullptr;
    for (QAbstractAxis* axis : c->axes()) {
        c->removeAxis(axis);
        delete axis;
    }
    view->setVisible(!points.empty());
    if (!points.empty()) {
        QAbstractAxis* xAxis = makeAxis(Qt::Horizontal);
        QAbstractAxis* yAxis = makeAxis(Qt::Vertical);
        c->addAxis(xAxis, Qt::AlignBottom);
        c->addAxis(yAxis, Qt::AlignLeft);
        addSeries(xAxis, yAxis);
        resetZoom();
    }
    updateNote();
}

void BlockPlot::addSeries(QAbstractAxis* xAxis, QAbstractAxis* yAxis)
{
    QChart* c = chart();
    shownPoints.assign(runs.size(), {});
    clampedCount = 0;
    if (logShown())
        for (const QPointF& p : points)
            clampedCount += p.y() <= 0;
    for (size_t r = 0; r < runs.size(); ++r)
        runSeries.push_back(makeSeries(r));
    if (clampedCount) {
        clampedSeries = new QScatterSeries;
        clampedSeries->setName(QString::fromUtf8("\u2264 0, not to scale"));
        clampedSeries->setMarkerShape(QScatterSeries::MarkerShapeTriangle);
        clampedSeries->setMarkerSize(9);
        runSeries.push_back(clampedSeries);
    }
    for (QXYSeries* series : runSeries) {
        c->addSeries(series);
        series->attachAxis(xAxis);
        series->attachAxis(yAxis);
    }
    applyTheme();
    c->legend()->setVisible(runSeries.size() > 1);
    c->legend()->setAlignment(runSeries.size() > 4 ? Qt::AlignRight : Qt::AlignTop);
    // A click on a legend entry shows or hides its series.
    for (QLegendMarker* marker : c->legend()->markers())
        connect(marker, &QLegendMarker::clicked, this, [marker] {
            marker->series()->setVisible(!marker->series()->isVisible());
            marker->setVisible(true);
            QColor text = marker->labelBrush().color();
            text.setAlphaF(marker->series()->isVisible() ? 1.0 : 0.4);
            marker->setLabelBrush(text);
        });
    // Zooming shows more of the points that were left out.
    if (auto* log = qobject_cast<QLogValueAxis*>(yAxis))
        connect(log, &QLogValueAxis::rangeChanged, this, &BlockPlot::redrawSoon);
    else
        connect(static_cast<QValueAxis*>(yAxis), &QValueAxis::rangeChanged, this,
                &BlockPlot::redrawSoon);
    connect(static_cast<QValueAxis*>(xAxis), &QValueAxis::rangeChanged, this,
            &BlockPlot::redrawSoon);
}

QPointF BlockPlot::shown(const QPointF& point) const
{
    if (clampedSeries && point.y() <= 0)
        return {point.x(), clampY};
    return point;
}

void BlockPlot::resetZoom()
{
    if (points.empty())
        return;
    const qsizetype end = runs.empty() ? 0 : runs.back().end;
    auto [xs, ys] = BlockPlotRange::extent(points, 0, end);
    const bool log = logShown();
    if (log) { // the positive values set a log axis' range
        std::vector<QPointF> positive;
        for (qsizetype i = 0; i < end; ++i)
            if (points[size_t(i)].y() > 0)
                positive.push_back(points[size_t(i)]);
        ys = BlockPlotRange::extent(positive, 0, qsizetype(positive.size())).second;
    }
    // Points get room at the sides; lines run from edge to edge.
    if (setup.kind != Setup::Lines || xs.first == xs.second)
        xs = BlockPlotRange::padded(xs, false);
    ys = BlockPlotRange::padded(ys, log);
    if (clampedCount) // a strip at the foot, below every value drawn to scale
        ys.first /= std::pow(ys.second / ys.first, 0.08);
    setRanges(xs.first, xs.second, ys.first, ys.second);
}

void BlockPlot::setRanges(double x0, double x1, double y0, double y1)
{
    redrawing = true; // one redraw for both axes
    for (QAbstractAxis* axis : chart()->axes()) {
        const bool across = axis->orientation() == Qt::Horizontal;
        setRange(axis, across ? BlockPlotRange::Span(x0, x1) : BlockPlotRange::Span(y0, y1));
    }
    redrawing = false;
    redraw();
}

void BlockPlot::askRanges()
{
    const QList<QAbstractAxis*> x = chart()->axes(Qt::Horizontal);
    const QList<QAbstractAxis*> y = chart()->axes(Qt::Vertical);
    if (x.isEmpty() || y.isEmpty())
        return;
    BlockPlotRangeDialog dialog(axisTitle(Qt::Horizontal), rangeOf(x[0]), axisTitle(Qt::Vertical),
                                rangeOf(y[0]), logShown(), this);
    if (dialog.exec() == QDialog::Accepted)
        setRanges(dialog.x().first, dialog.x().second, dialog.y().first, dialog.y().second);
}

void BlockPlot::redrawSoon()
{
    // A resize or a zoom changes the area and both axes at once: one redraw
    // after them, while the chart shows the points it has at the new scale.
    if (!redrawPending)
        QTimer::singleShot(0, this, &BlockPlot::redraw);
    redrawPending = true;
}

// A projection keeps one scale across and up: the axis with less to a
// pixel is widened to the other's.
bool BlockPlot::keepAspect()
{
    const QSizeF area = chart()->plotArea().size();
    QAbstractAxis* xAxis = chart()->axes(Qt::Horizontal).value(0);
    QAbstractAxis* yAxis = chart()->axes(Qt::Vertical).value(0);
    if (setup.kind != Setup::Projection || area.width() < 1 || area.height() < 1)
        return false;
    const auto xs = rangeOf(xAxis), ys = rangeOf(yAxis);
    const double ux = (xs.second / 2 - xs.first / 2) / area.width();
    const double uy = (ys.second / 2 - ys.first / 2) / area.height();
    if (std::abs(ux - uy) <= 1e-9 * std::max(ux, uy))
        return false;
    const double units = 2 * std::max(ux, uy);
    redrawing = true;
    setRange(xAxis, BlockPlotRange::widened(xs, units, int(area.width())));
    setRange(yAxis, BlockPlotRange::widened(ys, units, int(area.height())));
    redrawing = false;
    return true;
}

// Ticks a label's room apart, one label format for each axis.
void BlockPlot::placeTicks()
{
    const QSizeF area = chart()->plotArea().size();
    for (QAbstractAxis* axis : chart()->axes()) {
        const auto span = rangeOf(axis);
        const bool across = axis->orientation() == Qt::Horizontal;
        if (auto* log = qobject_cast<QLogValueAxis*>(axis)) {
            // A label a decade, or every few decades where they do not fit.
            const double room = std::max(2.0, area.height() / (2.5 * fontMetrics().height()));
            const double decades = std::log10(span.second / span.first);
            const double base = std::pow(10.0, std::max(1.0, std::ceil(decades / room)));
            if (log->base() != base)
                log->setBase(base);
            log->setLabelFormat(span.first >= 1 && span.second < 1e6 ? "%.0f" : "%.0e");
            continue;
        }
        auto* linear = static_cast<QValueAxis*>(axis);
        const int pixels = int(across ? area.width() : area.height());
        int spacing = across ? 80 : int(2.5 * fontMetrics().height());
        double step = BlockPlotRange::tickStep(span, pixels, spacing);
        QString format = BlockPlotRange::labelFormat(span, step);
        if (across) { // the widest label sets the room a tick needs
            const auto width = [&](double v) {
                return fontMetrics().horizontalAdvance(QString::asprintf(qPrintable(format), v));
            };
            const int widest = std::max(width(span.first), width(span.second)) + 24;
            if (widest > spacing) {
                step = BlockPlotRange::tickStep(span, pixels, widest);
                format = BlockPlotRange::labelFormat(span, step);
            }
        }
        linear->setTickAnchor(BlockPlotRange::firstTick(span.first, step));
        linear->setTickInterval(step);
        linear->setLabelFormat(format);
    }
}

// A long legend beside a low chart gets a smaller font, down to a size
// still readable; what does not fit then scrolls with a drag.
void BlockPlot::fitLegend()
{
    QLegend* legend = chart()->legend();
    if (legend->alignment() != Qt::AlignRight || runSeries.empty())
        return;
    QFont font = this->font();
    const int room = int(chart()->size().height() * 0.8 / qsizetype(runSeries.size()));
    font.setPixelSize(std::clamp(room - 6, 10, std::max(10, QFontInfo(font).pixelSize())));
    if (legend->font() != font)
        legend->setFont(font);
}

void BlockPlot::redraw()
{
    redrawPending = false;
    const QList<QAbstractAxis*> xAxes = chart()->axes(Qt::Horizontal);
    const QList<QAbstractAxis*> yAxes = chart()->axes(Qt::Vertical);
    if (redrawing || xAxes.isEmpty() || yAxes.isEmpty())
        return;
    keepAspect();
    placeTicks();
    const auto [x0, x1] = rangeOf(xAxes[0]);
    const auto [y0, y1] = rangeOf(yAxes[0]);
    clampY = y0 * std::pow(y1 / y0, 0.03); // just above a log axis' foot
    const QSize pixels = chart()->plotArea().size().toSize();
    fitLegend();
    // Many series over one another: two pixels a column keep them quick.
    const int columns = runs.size() > 4 ? pixels.width() / 2 : pixels.width();
    QList<QPointF> clamped;
    qsizetype total = 0;
    for (size_t r = 0; r < runs.size(); ++r) {
        const Run& run = runs[r];
        shownPoints[r] =
            setup.kind == Setup::Projection
                ? BlockPlotDecimator::perPixel(points, run.begin, run.end,
                                               QRectF(QPointF(x0, y0), QPointF(x1, y1)), pixels)
                : BlockPlotDecimator::minMax(points, run.begin, run.end, x0, x1, columns);
        QList<QPointF> list;
        list.reserve(qsizetype(shownPoints[r].size()));
        for (qsizetype i : shownPoints[r])
            (clampedSeries && points[size_t(i)].y() <= 0 ? clamped : list)
                .append(shown(points[size_t(i)]));
        runSeries[r]->replace(list);
        total += list.size();
    }
    if (clampedSeries)
        clampedSeries->replace(clamped);
    // Smooth edges cost more than they show on a plot this full.
    view->setRenderHint(QPainter::Antialiasing, total < 20000);
    describe();
}

void BlockPlot::updateNote()
{
    QStringList parts;
    const QString y = columnName(Qt::Vertical);
    const QString either = xColumn < 0 && setup.kind != Setup::Projection
                               ? y
                               : y + " or " + columnName(Qt::Horizontal);
    if (points.empty())
        parts << QString("Nothing to plot: no row of this block has a finite number in %1.")
                     .arg(either);
    else if (skippedRows)
        parts << QString("%1 row(s) not plotted: no finite number in %2 (inf, nan or text).")
                     .arg(skippedRows)
                     .arg(either);
    if (clampedCount)
        parts << QString("%1 value(s) at or below 0 cannot be shown on a log scale; they are "
                         "marked at its foot, not to scale.")
                     .arg(clampedCount);
    if (!modesKnown)
        parts << "The report does not say where each mode begins: all rows are one series.";
    if (modeCount > maxSeries)
        parts
            << QString("Only the first %1 of %2 modes are plotted.").arg(maxSeries).arg(modeCount);
    noteLabel->setText(parts.join(' '));
    noteLabel->setVisible(!parts.isEmpty());
    describe();
}

// What the chart shows, for assistive technology.
void BlockPlot::describe()
{
    const QString over = axisTitle(Qt::Vertical) + " over " + axisTitle(Qt::Horizontal);
    view->setAccessibleName("Plot of " + over);
    const QList<QAbstractAxis*> xAxes = chart()->axes(Qt::Horizontal);
    const QList<QAbstractAxis*> yAxes = chart()->axes(Qt::Vertical);
    if (points.empty() || xAxes.isEmpty() || yAxes.isEmpty()) {
        view->setAccessibleDescription(note());
        return;
    }
    const auto xs = rangeOf(xAxes[0]), ys = rangeOf(yAxes[0]);
    view->setAccessibleDescription(
        QString("%1: %2 series, %3 points; %4 from %5 to %6, %7 from %8 to %9 shown. %10")
            .arg(over)
            .arg(runs.size())
            .arg(runs.back().end)
            .arg(axisTitle(Qt::Horizontal))
            .arg(xs.first, 0, 'g', 4)
            .arg(xs.second, 0, 'g', 4)
            .arg(axisTitle(Qt::Vertical))
            .arg(ys.first, 0, 'g', 4)
            .arg(ys.second, 0, 'g', 4)
            .arg(note())
            .trimmed());
}

qsizetype BlockPlot::nearestShown(const QPoint& position, QXYSeries*& nearest) const
{
    qsizetype best = -1;
    double bestDistance = 10 * 10; // pixels, squared
    for (size_t r = 0; r < shownPoints.size(); ++r) {
        if (!runSeries[r]->isVisible())
            continue;
        for (qsizetype i : shownPoints[r]) {
            const QPointF inChart = chart()->mapToPosition(shown(points[size_t(i)]), runSeries[r]);
            const QPointF at = view->mapFromScene(chart()->mapToScene(inChart));
            const QPointF d = at - QPointF(position);
            const double distance = d.x() * d.x() + d.y() * d.y();
            if (distance < bestDistance) {
                bestDistance = distance;
                best = i;
                nearest = runSeries[r];
            }
        }
    }
    return best;
}

void BlockPlot::showToolTip(const QPoint& position, const QPoint& globalPosition)
{
    QXYSeries* series = nullptr;
    const qsizetype i = nearestShown(position, series);
    if (i < 0) {
        QToolTip::hideText();
        return;
    }
    const qsizetype line = lines[size_t(i)];
    const double x = points[size_t(i)].x() * std::pow(10.0, scaleExponent[0]);
    const double y = points[size_t(i)].y() * std::pow(10.0, scaleExponent[1]);
    const QString xText = xColumn < 0 && setup.kind != Setup::Projection
                              ? QString::number(x)
                              : QString::number(x, 'g', 7);
    QString tip = QString("%1: %2\n%3: %4")
                      .arg(columnName(Qt::Horizontal), xText, columnName(Qt::Vertical),
                           QString::number(y, 'g', 7));
    if (runs.size() > 1)
        tip += "\n" + series->name();
    tip += QString("\nline %1").arg(line + 1);
    QToolTip::showText(globalPosition, tip, view);
}

void BlockPlot::popupMenu(const QPoint& globalPosition)
{
    QMenu menu(this);
    menu.setObjectName("plot menu");
    menu.addAction("Save as PNG…", this, [this] { saveWith("PNG image (*.png)"); });
    menu.addAction("Save as SVG…", this, [this] { saveWith("SVG image (*.svg)"); });
    menu.addAction("Save as PDF…", this, [this] { saveWith("PDF document (*.pdf)"); });
    menu.addSeparator();
    menu.addAction("Axis Ranges…", this, &BlockPlot::askRanges);
    menu.addAction("Show All", this, &BlockPlot::resetZoom);
    menu.exec(globalPosition);
}

QByteArray BlockPlot::png() const
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    view->settle(); // not a stretched picture of a resize in progress
    view->grab().save(&buffer, "PNG");
    return bytes;
}

QByteArray BlockPlot::svg() const
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QSvgGenerator generator;
    view->settle();
    generator.setOutputDevice(&buffer);
    generator.setSize(view->size());
    generator.setViewBox(view->rect());
    generator.setTitle(axisTitle(Qt::Vertical) + " over " + axisTitle(Qt::Horizontal));
    generator.setDescription(view->accessibleDescription());
    QPainter painter(&generator);
    view->render(&painter);
    painter.end();
    return bytes;
}

QByteArray BlockPlot::pdf() const
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    view->settle();
    QPdfWriter writer(&buffer);
    writer.setTitle(axisTitle(Qt::Vertical) + " over " + axisTitle(Qt::Horizontal));
    writer.setResolution(96);
    writer.setPageSize(QPageSize(view->size() * 72 / 96, QPageSize::Point));
    writer.setPageMargins({});
    QPainter painter(&writer);
    view->render(&painter);
    painter.end();
    return bytes;
}

QByteArray BlockPlot::bytesFor(const QString& path) const
{
    if (path.endsWith(".svg", Qt::CaseInsensitive))
        return svg();
    return path.endsWith(".pdf", Qt::CaseInsensitive) ? pdf() : png();
}

bool BlockPlot::save(const QString& path, QString& error) const
{
    return BlockFileWriter::write(path, bytesFor(path), error);
}

void BlockPlot::saveAs()
{
    saveWith("PNG image (*.png)");
}

void BlockPlot::saveWith(QString filter)
{
    QString path = QFileDialog::getSaveFileName(
        this, "Save Plot", QString(), "PNG image (*.png);;SVG image (*.svg);;PDF document (*.pdf)",
        &filter);
    if (path.isEmpty())
        return;
    const QString suffix = filter.startsWith("SVG")   ? ".svg"
                           : filter.startsWith("PDF") ? ".pdf"
                                                      : ".png";
    if (!QStringList{"png", "svg", "pdf"}.contains(QFileInfo(path).suffix(), Qt::CaseInsensitive))
        path += suffix;
    BlockFileWriter::writeOrWarn(this, path, bytesFor(path));
}
