#pragma once

#include <QObject>

// While a run blocks the one GUI thread, clicks and keys pile up in the
// window system's queue. Called after the run, dropPending() delivers that
// queue with every input event in it dropped, so that a click given while
// the console was open does not start a second run.
class QueuedInputDropper : public QObject
{
public:
    static void dropPending();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QueuedInputDropper() = default;
};
