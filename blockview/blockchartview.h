#pragma once

#include <QBasicTimer>
#include <QChartView>
#include <QPixmap>

// The chart of a plot page: the wheel zooms around the pointer, a band
// drawn with the left button zooms into it, a double click asks for the
// whole plot again; + and - zoom about the middle, the arrows pan, 0 shows
// all; where the pointer rests and where the menu is asked
// for are told to the owner. While the window is being resized the last
// picture is shown stretched, and the chart is laid out for the new size
// once the size has held still for a moment: laying out and painting every
// point again at each step of a drag would make the window lag.
class BlockChartView : public QChartView
{
    Q_OBJECT

public:
    explicit BlockChartView(QChart* chart, QWidget* parent = nullptr);

    // How long the size must hold still before the chart is laid out anew.
    static constexpr int settleMs = 120;
    static constexpr int snapshotMs = 250;
    // Lays the chart out for the present size now, if a resize waits.
    void settle();

signals:
    void resetRequested();
    void hovered(const QPoint& position, const QPoint& globalPosition);
    void menuRequested(const QPoint& globalPosition);

protected:
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QPixmap picture() const;

    QPixmap stretched; // the picture before the resize, while it waits
    QBasicTimer settleTimer;
    // The chart's picture, taken when painting has been still for a moment,
    // so that a resize starts without painting every point once more.
    QPixmap snapshot;
    QBasicTimer snapshotTimer;
    bool painted = false; // since it was last shown
};
