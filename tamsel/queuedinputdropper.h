#pragma once

#include <QObject>

class QString;

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
    // Tamsel's windows show a busy cursor and are disabled meanwhile, so that
    // an assistive tool's action, which is no input event, cannot act either.
    // Runs may nest (a report job runs block after block): the outermost
    // one counts.
    class DuringRun
    {
    public:
        DuringRun();
        ~DuringRun();
        DuringRun(const DuringRun&) = delete;
        DuringRun& operator=(const DuringRun&) = delete;

        // True while a run is on: whatever would start another refuses.
        static bool active();
        // Names the step the run is on ("Block 3 of 7: Mode Shapes") in a
        // small window without Cancel, which shows once the run has taken
        // a second; it goes with the outermost run.
        static void showStep(const QString& text, int done, int total);
    };

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QueuedInputDropper() = default;
};
