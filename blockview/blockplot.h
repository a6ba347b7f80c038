#pragma once

#include "blockcolumns.h"

#include <QWidget>

#include <vector>

class BlockChartView;
class QAbstractAxis;
class QChart;
class QCheckBox;
class QComboBox;
class QXYSeries;

// A block's columns as a chart: one column over another (or over the row
// when that one holds no numbers), or a two-dimensional projection of x, y
// and z columns. Only what the chart's width can show is handed to it, so a
// million rows plot at once; the wheel and a band zoom, a double click
// shows all, the pointer's point is told in a tool tip, and the chart saves
// as PNG or SVG.
class BlockPlot : public QWidget
{
    Q_OBJECT

public:
    // How a block is best plotted; the application knows its blocks.
    struct Setup {
        enum Kind { Lines, Points, Projection };
        Kind kind = Lines;
        int xColumn = 0;        // Projection: the first of three columns x, y, z
        int yColumn = 1;        // -1: the column with the most distinct values
        bool logY = false;      // values at or below 0 sit on the axis' floor
        bool splitRuns = false; // a new series where x falls back or a line is no data
        QString runName = "Series %1";
    };

    // The text must outlive the plot.
    BlockPlot(const BlockText& text, const BlockLayout& layout, const Setup& setup,
              QWidget* parent = nullptr);
    ~BlockPlot() override;

    QChart* chart() const;
    BlockChartView* chartView() const { return view; }
    // The column plotted upwards (Lines, Points) or the projection's index.
    void setChoice(int index);
    void setLogScale(bool on);
    void resetZoom();

    // The chart as it is shown.
    QByteArray png() const;
    QByteArray svg() const;
    // As SVG when the name ends in .svg, else as PNG.
    bool save(const QString& path, QString& error) const;

public slots:
    void saveAs();

private slots:
    void redrawSoon();

private:
    struct Run {
        qsizetype begin, end;
        QString name;
    };

    QWidget* makeControls();
    void collect();
    void addPoint(qsizetype line, double x, double y);
    int liveliestColumn() const;
    void rebuildChart();
    QXYSeries* makeSeries() const;
    QAbstractAxis* makeAxis(Qt::Orientation orientation) const;
    QString axisTitle(Qt::Orientation orientation) const;
    QRectF bounds() const;
    void redraw();
    QPointF shown(const QPointF& point) const;
    void showToolTip(const QPoint& position, const QPoint& globalPosition);
    qsizetype nearestShown(const QPoint& position, QXYSeries*& series) const;
    void popupMenu(const QPoint& globalPosition);
    // Asks for a file name, with this filter chosen first.
    void saveWith(QString filter);

    BlockColumns cols;
    Setup setup;
    int xColumn; // -1: the row
    int yColumn; // Lines, Points
    int projection = 0;
    double logFloor = 1;
    std::vector<QPointF> points;
    std::vector<qsizetype> lines; // the text line of each point
    std::vector<Run> runs;
    std::vector<std::vector<qsizetype>> shownPoints; // per run, indices into points
    QComboBox* choice = nullptr;
    QCheckBox* logBox = nullptr;
    BlockChartView* view;
    bool redrawing = false;
    bool redrawPending = false;
};
