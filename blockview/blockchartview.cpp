#include "blockchartview.h"

#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

namespace
{

// A plot reads as a graphic, named after what it shows.
QAccessibleInterface* graphicOf(const QString& className, QObject* object)
{
    auto* view = qobject_cast<BlockChartView*>(object);
    if (className != "BlockChartView" || !view)
        return nullptr;
    return new QAccessibleWidget(view, QAccessible::Graphic);
}

} // namespace

BlockChartView::BlockChartView(QChart* chart, QWidget* parent) : QChartView(chart, parent)
{
    static const bool installed = (QAccessible::installFactory(graphicOf), true);
    Q_UNUSED(installed);
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

void BlockChartView::keyPressEvent(QKeyEvent* event)
{
    const QRectF area = chart()->plotArea();
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        chart()->zoom(1.25);
        break;
    case Qt::Key_Minus:
        chart()->zoom(0.8);
        break;
    case Qt::Key_Left:
    case Qt::Key_Right: // a tenth of the width
        chart()->scroll((event->key() == Qt::Key_Left ? -0.1 : 0.1) * area.width(), 0);
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
        chart()->scroll(0, (event->key() == Qt::Key_Down ? -0.1 : 0.1) * area.height());
        break;
    case Qt::Key_0:
        emit resetRequested();
        break;
    default:
        QChartView::keyPressEvent(event);
        return;
    }
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

void BlockChartView::resizeEvent(QResizeEvent* event)
{
    // A first size, or one before the chart was first painted, is laid out
    // at once.
    if (!isVisible() || !painted || event->oldSize().isEmpty() || chart()->series().isEmpty()) {
        QChartView::resizeEvent(event);
        return;
    }
    if (stretched.isNull())
        stretched = snapshot.isNull() ? picture() : snapshot;
    snapshotTimer.stop();
    settleTimer.start(settleMs, this);
    viewport()->update();
}

// The chart as it stands, at its present size.
QPixmap BlockChartView::picture() const
{
    QPixmap pixmap(chart()->size().toSize() * devicePixelRatio());
    pixmap.setDevicePixelRatio(devicePixelRatio());
    pixmap.fill(palette().color(QPalette::Base));
    QPainter painter(&pixmap);
    scene()->render(&painter, QRectF(), chart()->geometry());
    return pixmap;
}

void BlockChartView::paintEvent(QPaintEvent* event)
{
    if (stretched.isNull()) {
        QChartView::paintEvent(event);
        painted = true;
        snapshot = QPixmap();
        snapshotTimer.start(snapshotMs, this);
        return;
    }
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(viewport()->rect(), stretched);
}

void BlockChartView::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == settleTimer.timerId()) {
        settle();
    } else if (event->timerId() == snapshotTimer.timerId()) {
        snapshotTimer.stop();
        snapshot = picture();
    } else {
        QChartView::timerEvent(event);
    }
}

void BlockChartView::hideEvent(QHideEvent* event)
{
    QChartView::hideEvent(event);
    painted = false;
    snapshotTimer.stop();
    settle();
}

void BlockChartView::settle()
{
    if (stretched.isNull())
        return;
    settleTimer.stop();
    stretched = QPixmap();
    QResizeEvent now(size(), size());
    QChartView::resizeEvent(&now);
    viewport()->update();
}
