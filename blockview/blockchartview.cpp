#include "blockchartview.h"

#include <QContextMenuEvent>
#include <QWheelEvent>

#include <cmath>

BlockChartView::BlockChartView(QChart* chart, QWidget* parent) : QChartView(chart, parent)
{
    setObjectName("plot viewer");
    setAccessibleName("Plot");
    setRubberBand(QChartView::RectangleRubberBand);
    setRenderHint(QPainter::Antialiasing);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
}

void BlockChartView::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y();
    if (steps == 0)
        return;
    // One notch zooms in by a quarter; the value under the pointer stays.
    const double factor = std::pow(1.25, steps / 120.0);
    const QRectF area = chart()->plotArea();
    const QPointF at = chart()->mapFromScene(mapToScene(event->position().toPoint()));
    const QPointF pointer(qBound(area.left(), at.x(), area.right()),
                          qBound(area.top(), at.y(), area.bottom()));
    const QRectF zoomed(pointer - (pointer - area.topLeft()) / factor, area.size() / factor);
    chart()->zoomIn(zoomed);
    event->accept();
}

void BlockChartView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        emit resetRequested();
    event->accept();
}

void BlockChartView::mouseMoveEvent(QMouseEvent* event)
{
    QChartView::mouseMoveEvent(event);
    if (!(event->buttons() & Qt::LeftButton))
        emit hovered(event->position().toPoint(), event->globalPosition().toPoint());
}

void BlockChartView::mouseReleaseEvent(QMouseEvent* event)
{
    // The right button opens the menu; it must not zoom out as well.
    if (event->button() == Qt::RightButton) {
        event->accept();
        return;
    }
    QChartView::mouseReleaseEvent(event);
}

void BlockChartView::contextMenuEvent(QContextMenuEvent* event)
{
    emit menuRequested(event->globalPos());
    event->accept();
}
