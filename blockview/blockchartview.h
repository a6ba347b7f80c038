#pragma once

#include <QChartView>

// The chart of a plot page: the wheel zooms around the pointer, a band
// drawn with the left button zooms into it, a double click asks for the
// whole plot again; where the pointer rests and where the menu is asked
// for are told to the owner.
class BlockChartView : public QChartView
{
    Q_OBJECT

public:
    explicit BlockChartView(QChart* chart, QWidget* parent = nullptr);

signals:
    void resetRequested();
    void hovered(const QPoint& position, const QPoint& globalPosition);
    void menuRequested(const QPoint& globalPosition);

protected:
    void wheelEvent(QWheelEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
};
