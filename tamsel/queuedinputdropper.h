#pragma once

#include <QObject>

// While a run holds the one GUI thread, clicks and keys must not act, then
// or later. dropPending() delivers the window system's queue with every input
// event in it dropped, so that a click given while the console was open does
// not start a second run.
class QueuedInputDropper : public QObject
{
public:
    static void dropPending();

    // For the length of a run: the platform layer's waits serve the windows
    // (paints, the window manager's pings, every window system event) with
    // all input dropped as it comes; at the end what is left is dropped.
    class DuringRun
    {
    public:
        DuringRun();
        ~DuringRun();
        DuringRun(const DuringRun&) = delete;
        DuringRun& operator=(const DuringRun&) = delete;
    };

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QueuedInputDropper() = default;
};
