#pragma once

#include "blockcolumns.h"

#include <QWidget>

#include <vector>

class BlockChartView;
class QAbstractAxis;
class QChart;
class QCheckBox;
class QComboBox;
class QLabel;
class QScatterSeries;
class QXYSeries;

// A block's columns as a chart: one column over another (or over the row
// when that one holds no numbers), or a two-dimensional projection of x, y
// and z columns at one scale across and up. Only what the chart's width can
// show is handed to it, so a million rows plot at once. Cells that hold no
// finite number are left out and counted in a note under the chart, as are
// values at or below 0 on a log axis, which are marked at its foot. The
// wheel, a band and the keyboard zoom and pan; ranges can be typed in; a
// legend entry shows or hides its series; the pointer's point is told in a
// tool tip, and the chart saves as PNG, SVG or PDF.
class BlockPlot : public QWidget
{
    Q_OBJECT

public:
    // How a block is best plotted; the application knows its blocks.
    struct Setup {
        // None: rows that join unrelated quantities, a table but no plot.
        enum Kind { None, Lines, Points, Projection };
        Kind kind = Lines;
        int xColumn = 0;        // Projection: the first of three columns x, y, z
        int yColumn = -1;       // -1: the first numeric column that varies
        bool logY = false;      // values at or below 0 are marked at the foot
        bool splitRuns = false; // a series a mode, as the report's headings say
    };

    // The text must outlive the plot.
    BlockPlot(const BlockText& text, const BlockLayout& layout, const Setup& setup,
              QWidget* parent = nullptr);
    ~BlockPlot() override;

    QChart* chart() const;
    BlockChartView* chartView() const { return view; }
    // What the chart does not show: rows left out, values clamped, or why
    // there is no chart at all.
    QString note() const;
    // The column plotted upwards (Lines, Points) or the projection's index.
    void setChoice(int index);
    void setLogScale(bool on);
    void setRanges(double x0, double x1, double y0, double y1);
    void resetZoom();

    // The chart as it is shown.
    QByteArray png() const;
    QByteArray svg() const;
    QByteArray pdf() const;
    // By the name's ending: .svg, .pdf, else PNG.
    bool save(const QString& path, QString& error) const;

public slots:
    void saveAs();
    void askRanges();

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Run {
        qsizetype begin, end;
        QString name;
    };

    QWidget* makeControls();
    void collect();
    bool finiteCell(qsizetype line, int column, double& value) const;
    int firstVaryingColumn() const;
    bool logShown() const;
    void rebuildChart();
    void addSeries(QAbstractAxis* xAxis, QAbstractAxis* yAxis);
    QXYSeries* makeSeries(size_t run) const;
    void applyTheme();
    QAbstractAxis* makeAxis(Qt::Orientation orientation) const;
    QString columnName(Qt::Orientation orientation) const;
    QString axisTitle(Qt::Orientation orientation) const;
    void scaleHuge();
    void redrawSoon();
    void redraw();
    bool keepAspect();
    void placeTicks();
    void fitLegend();
    QPointF shown(const QPointF& point) const;
    void updateNote();
    void describe();
    void showToolTip(const QPoint& position, const QPoint& globalPosition);
    qsizetype nearestShown(const QPoint& position, QXYSeries*& series) const;
    void popupMenu(const QPoint& globalPosition);
    // Asks for a file name, with this filter chosen first.
    void saveWith(QString filter);
    QByteArray bytesFor(const QString& path) const;

    BlockColumns cols;
    Setup setup;
    int xColumn; // -1: the row
    int yColumn; // Lines, Points
    int projection = 0;
    std::vector<QPointF> points;
    std::vector<qsizetype> lines; // the text line of each point
    std::vector<Run> runs;
    int scaleExponent[2] = {0, 0}; // points are in units of 1e this, across and up
    qsizetype modeCount = 0;
    bool modesKnown = true;
    qsizetype skippedRows = 0; // rows without a finite number to plot
    qsizetype clampedCount = 0;
    double clampY = 0; // where values at or below 0 are marked on a log axis
    std::vector<std::vector<qsizetype>> shownPoints; // per run, indices into points
    std::vector<QXYSeries*> runSeries;
    QScatterSeries* clampedSeries = nullptr;
    QComboBox* choice = nullptr;
    QCheckBox* logBox = nullptr;
    QLabel* noteLabel;
    BlockChartView* view;
    bool redrawing = false;
    bool redrawPending = false;
};
