#include "blockplot.h"

#include "blockchartview.h"
#include "blockfilewriter.h"
#include "blockplotdecimator.h"

#include <QBuffer>
#include <QChart>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineSeries>
#include <QLogValueAxis>
#include <QMenu>
#include <QPushButton>
#include <QScatterSeries>
#include <QSvgGenerator>
#include <QTimer>
#include <QToolTip>
#include <QVBoxLayout>
#include <QValueAxis>

#include <QPainter>

#include <cmath>
#include <set>
#include <utility>

namespace
{

// A chart gets at most this many series; more runs than that are left out.
constexpr int maxSeries = 64;
const char* const projections[] = {"x\u2013y", "x\u2013z", "y\u2013z"};
const int projectionColumns[3][2] = {{0, 1}, {0, 2}, {1, 2}};

} // namespace

BlockPlot::BlockPlot(const BlockText& text, const BlockLayout& layout, const Setup& plotSetup,
                     QWidget* parent)
    : QWidget(parent), cols(text, layout), setup(plotSetup), xColumn(plotSetup.xColumn),
      yColumn(plotSetup.yColumn), view(new BlockChartView(new QChart))
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
        yColumn = liveliestColumn();
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
    box->addWidget(makeControls());
    box->addWidget(view, 1);
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
    auto* save = new QPushButton("&Save Plot…");
    save->setObjectName("save plot");
    row->addWidget(save);
    connect(save, &QPushButton::clicked, this, &BlockPlot::saveAs);
    return bar;
}

int BlockPlot::liveliestColumn() const
{
    // The first rows tell: a column of a few values (zeros, a rigid-body
    // mode's ones) says less than one that changes from row to row.
    const qsizetype probe = qMin<qsizetype>(cols.lineCount(), 2000);
    int best = xColumn == 1 ? 0 : 1;
    size_t most = 0;
    for (int column = 0; column < cols.columnCount(); ++column) {
        if (column == xColumn)
            continue;
        std::set<double> values;
        double value;
        for (qsizetype line = 0; line < probe; ++line)
            if (cols.number(line, column, value))
                values.insert(value);
        if (values.size() > most) {
            most = values.size();
            best = column;
        }
    }
    return best;
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
    const bool projecting = setup.kind == Setup::Projection;
    const int xc = projecting ? setup.xColumn + projectionColumns[projection][0] : xColumn;
    const int yc = projecting ? setup.xColumn + projectionColumns[projection][1] : yColumn;
    double x, y;
    qsizetype row = 0;
    QString heading;
    for (qsizetype line = 0; line < cols.lineCount(); ++line) {
        const bool valued = cols.number(line, yc, y);
        if (!valued && !cols.fits(line)) {
            if (setup.splitRuns)
                heading = cols.cell(line, 0).trimmed();
            continue;
        }
        ++row;
        if (!valued || (xc >= 0 && !cols.number(line, xc, x)))
            continue;
        if (xc < 0)
            x = double(row);
        const bool fallsBack = setup.splitRuns && !points.empty() && x < points.back().x();
        if (runs.empty() || !heading.isNull() || fallsBack) {
            if (!runs.empty())
                runs.back().end = qsizetype(points.size());
            const QString name = heading.isNull() ? setup.runName.arg(runs.size() + 1) : heading;
            runs.push_back({qsizetype(points.size()), 0, name});
            heading = QString();
        }
        addPoint(line, x, y);
    }
    if (!runs.empty())
        runs.back().end = qsizetype(points.size());
    if (runs.size() > size_t(maxSeries))
        runs.resize(maxSeries);
}

void BlockPlot::addPoint(qsizetype line, double x, double y)
{
    points.emplace_back(x, y);
    lines.push_back(line);
}

QString BlockPlot::axisTitle(Qt::Orientation orientation) const
{
    const int index = orientation == Qt::Horizontal ? 0 : 1;
    if (setup.kind == Setup::Projection)
        return QString::fromUtf8(projections[projection]).split(QChar(0x2013))[index];
    const int column = index == 0 ? xColumn : yColumn;
    return column < 0 ? QString("Row") : cols.title(column);
}

QAbstractAxis* BlockPlot::makeAxis(Qt::Orientation orientation) const
{
    QAbstractAxis* axis;
    if (orientation == Qt::Vertical && setup.logY && setup.kind != Setup::Projection) {
        auto* log = new QLogValueAxis;
        log->setLabelFormat("%.3g");
        log->setMinorTickCount(-1);
        axis = log;
    } else {
        auto* linear = new QValueAxis;
        linear->setLabelFormat("%.4g");
        axis = linear;
    }
    axis->setTitleText(axisTitle(orientation));
    return axis;
}

QXYSeries* BlockPlot::makeSeries() const
{
    if (setup.kind == Setup::Lines)
        return new QLineSeries;
    auto* scatter = new QScatterSeries;
    scatter->setMarkerSize(7);
    return scatter;
}

void BlockPlot::rebuildChart()
{
    QChart* c = chart();
    c->removeAllSeries();
    for (QAbstractAxis* axis : c->axes()) {
        c->removeAxis(axis);
        delete axis;
    }
    // On a log axis, values at or below zero (rigid-body modes, say) sit a
    // decade or two below the smallest positive one.
    double smallest = INFINITY;
    for (const QPointF& p : points)
        if (p.y() > 0)
            smallest = std::min(smallest, p.y());
    logFloor = std::isfinite(smallest) ? smallest / 100 : 1e-6;
    QAbstractAxis* xAxis = makeAxis(Qt::Horizontal);
    QAbstractAxis* yAxis = makeAxis(Qt::Vertical);
    c->addAxis(xAxis, Qt::AlignBottom);
    c->addAxis(yAxis, Qt::AlignLeft);
    shownPoints.assign(runs.size(), {});
    for (const Run& run : runs) {
        QXYSeries* series = makeSeries();
        series->setName(run.name);
        c->addSeries(series);
        if (points.size() > 20000) // thin lines draw fast
            series->setPen(QPen(series->color(), 0));
        series->attachAxis(xAxis);
        series->attachAxis(yAxis);
    }
    c->legend()->setVisible(runs.size() > 1);
    c->legend()->setAlignment(runs.size() > 4 ? Qt::AlignRight : Qt::AlignTop);
    // Zooming shows more of the points that were left out.
    connect(xAxis, SIGNAL(rangeChanged(qreal, qreal)), this, SLOT(redrawSoon()));
    connect(yAxis, SIGNAL(rangeChanged(qreal, qreal)), this, SLOT(redrawSoon()));
    resetZoom();
}

namespace
{

std::pair<double, double> rangeOf(const QAbstractAxis* axis)
{
    if (const auto* log = qobject_cast<const QLogValueAxis*>(axis))
        return {log->min(), log->max()};
    const auto* linear = static_cast<const QValueAxis*>(axis);
    return {linear->min(), linear->max()};
}

// Some room around the points; a single value gets a range around it.
std::pair<double, double> padded(double low, double high, bool log)
{
    if (log)
        return {low / 2, high * 2};
    const double margin = high > low ? (high - low) * 0.04 : std::max(std::abs(low) * 0.1, 1.0);
    return {low - margin, high + margin};
}

} // namespace

QPointF BlockPlot::shown(const QPointF& point) const
{
    if (setup.logY && setup.kind != Setup::Projection && point.y() < logFloor)
        return {point.x(), logFloor};
    return point;
}

QRectF BlockPlot::bounds() const
{
    if (points.empty())
        return {0, 0, 1, 1};
    double x0 = INFINITY, x1 = -INFINITY, y0 = INFINITY, y1 = -INFINITY;
    for (qsizetype i = 0; i < (runs.empty() ? 0 : runs.back().end); ++i) {
        const QPointF p = shown(points[size_t(i)]);
        x0 = std::min(x0, p.x()), x1 = std::max(x1, p.x());
        y0 = std::min(y0, p.y()), y1 = std::max(y1, p.y());
    }
    return QRectF(QPointF(x0, y0), QPointF(x1, y1));
}

void BlockPlot::resetZoom()
{
    const QRectF all = bounds();
    // Points get room at the sides; lines run from edge to edge.
    const bool tight = setup.kind == Setup::Lines && all.width() > 0;
    const auto [x0, x1] =
        tight ? std::make_pair(all.left(), all.right()) : padded(all.left(), all.right(), false);
    const auto [y0, y1] =
        padded(all.top(), all.bottom(), setup.logY && setup.kind != Setup::Projection);
    redrawing = true; // one redraw for both axes
    for (QAbstractAxis* axis : chart()->axes()) {
        const bool across = axis->orientation() == Qt::Horizontal;
        axis->setRange(across ? x0 : y0, across ? x1 : y1);
        // Round ticks: mode 5, not mode 4.45.
        if (auto* linear = qobject_cast<QValueAxis*>(axis))
            linear->applyNiceNumbers();
    }
    redrawing = false;
    redraw();
}

void BlockPlot::redrawSoon()
{
    // A resize or a zoom changes the area and both axes at once: one redraw
    // after them, while the chart shows the points it has at the new scale.
    if (!redrawPending)
        QTimer::singleShot(0, this, &BlockPlot::redraw);
    redrawPending = true;
}

void BlockPlot::redraw()
{
    redrawPending = false;
    const QList<QAbstractAxis*> xAxes = chart()->axes(Qt::Horizontal);
    const QList<QAbstractAxis*> yAxes = chart()->axes(Qt::Vertical);
    if (redrawing || xAxes.isEmpty() || yAxes.isEmpty())
        return;

    const auto [x0, x1] = rangeOf(xAxes[0]);
    const auto [y0, y1] = rangeOf(yAxes[0]);
    const QSize pixels = chart()->plotArea().size().toSize();
    // A log axis labels each decade; where the height has no room for them
    // all, it labels every few decades, so that no label is cut short.
    if (auto* log = qobject_cast<QLogValueAxis*>(yAxes[0]); log && y0 > 0 && y1 > y0) {
        const double room = std::max(2, pixels.height() / (2 * fontMetrics().height()));
        const double base = std::pow(10.0, std::max(1.0, std::ceil(std::log10(y1 / y0) / room)));
        if (log->base() != base)
            log->setBase(base);
    }
    // Many series over one another: two pixels a column keep them quick.
    const int columns = runs.size() > 4 ? pixels.width() / 2 : pixels.width();
    const QList<QAbstractSeries*> series = chart()->series();
    qsizetype total = 0;
    for (size_t r = 0; r < runs.size() && r < size_t(series.size()); ++r) {
        const Run& run = runs[r];
        shownPoints[r] =
            setup.kind == Setup::Projection
                ? BlockPlotDecimator::perPixel(points, run.begin, run.end,
                                               QRectF(QPointF(x0, y0), QPointF(x1, y1)), pixels)
                : BlockPlotDecimator::minMax(points, run.begin, run.end, x0, x1, columns);
        QList<QPointF> list;
        list.reserve(qsizetype(shownPoints[r].size()));
        for (qsizetype i : shownPoints[r])
            list.append(shown(points[size_t(i)]));
        static_cast<QXYSeries*>(series[qsizetype(r)])->replace(list);
        total += list.size();
    }
    // Smooth edges cost more than they show on a plot this full.
    view->setRenderHint(QPainter::Antialiasing, total < 20000);
}

qsizetype BlockPlot::nearestShown(const QPoint& position, QXYSeries*& nearest) const
{
    const QList<QAbstractSeries*> series = chart()->series();
    qsizetype best = -1;
    double bestDistance = 10 * 10; // pixels, squared
    for (size_t r = 0; r < shownPoints.size() && r < size_t(series.size()); ++r) {
        auto* xy = static_cast<QXYSeries*>(series[qsizetype(r)]);
        for (qsizetype i : shownPoints[r]) {
            const QPointF inChart = chart()->mapToPosition(shown(points[size_t(i)]), xy);
            const QPointF at = view->mapFromScene(chart()->mapToScene(inChart));
            const QPointF d = at - QPointF(position);
            const double distance = d.x() * d.x() + d.y() * d.y();
            if (distance < bestDistance) {
                bestDistance = distance;
                best = i;
                nearest = xy;
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
    const QString xText = xColumn < 0 && setup.kind != Setup::Projection
                              ? QString::number(points[size_t(i)].x())
                              : QString::number(points[size_t(i)].x(), 'g', 7);
    QString tip = QString("%1: %2\n%3: %4")
                      .arg(axisTitle(Qt::Horizontal), xText, axisTitle(Qt::Vertical),
                           QString::number(points[size_t(i)].y(), 'g', 7));
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
    menu.addSeparator();
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
    QPainter painter(&generator);
    view->render(&painter);
    painter.end();
    return bytes;
}

bool BlockPlot::save(const QString& path, QString& error) const
{
    const bool asSvg = path.endsWith(".svg", Qt::CaseInsensitive);
    return BlockFileWriter::write(path, asSvg ? svg() : png(), error);
}

void BlockPlot::saveAs()
{
    saveWith("PNG image (*.png)");
}

void BlockPlot::saveWith(QString filter)
{
    QString path = QFileDialog::getSaveFileName(this, "Save Plot", QString(),
                                                "PNG image (*.png);;SVG image (*.svg)", &filter);
    if (path.isEmpty())
        return;
    const QString suffix = filter.startsWith("SVG") ? ".svg" : ".png";
    if (!path.endsWith(".png", Qt::CaseInsensitive) && !path.endsWith(".svg", Qt::CaseInsensitive))
        path += suffix;
    BlockFileWriter::writeOrWarn(this, path,
                                 path.endsWith(".svg", Qt::CaseInsensitive) ? svg() : png());
}
