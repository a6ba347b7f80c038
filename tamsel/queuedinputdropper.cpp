#include "queuedinputdropper.h"

#include "platform/wait.h"

#include <QApplication>
#include <QEvent>
#include <QList>
#include <QPointer>
#include <QProgressDialog>
#include <QWidget>

#include <memory>
#include <utility>

void QueuedInputDropper::dropPending()
{
    QueuedInputDropper dropper;
    QCoreApplication* app = QCoreApplication::instance();
    app->installEventFilter(&dropper);
    // Twice: the first pass may turn window system input into posted events.
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    app->removeEventFilter(&dropper);
}

bool QueuedInputDropper::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
        return true;
    default:
        return false;
    }
}

namespace
{

// What the outermost run changed, to be put back when it ends.
struct RunState {
    int depth = 0;
    QList<QPointer<QWidget>> disabled;
    QPointer<QWidget> focus;
    std::unique_ptr<QProgressDialog> progress;
};

RunState& runState()
{
    static RunState state;
    return state;
}

void closeWindows(RunState& state)
{
    state.focus = QApplication::focusWidget();
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->isEnabled()) {
            window->setEnabled(false);
            state.disabled.append(window);
        }
    }
}

void reopenWindows(RunState& state)
{
    for (const QPointer<QWidget>& window : std::as_const(state.disabled))
        if (window)
            window->setEnabled(true);
    state.disabled.clear();
    // A disabled widget loses the focus; the user's place is kept.
    if (state.focus && state.focus->isEnabled())
        state.focus->setFocus(Qt::OtherFocusReason);
    state.focus = nullptr;
}

} // namespace

QueuedInputDropper::DuringRun::DuringRun()
{
    RunState& state = runState();
    if (state.depth++ > 0)
        return;
    platform::setWaitHook(&QueuedInputDropper::dropPending);
    if (qobject_cast<QApplication*>(QCoreApplication::instance())) {
        QApplication::setOverrideCursor(Qt::BusyCursor);
        closeWindows(state);
    }
}

QueuedInputDropper::DuringRun::~DuringRun()
{
    RunState& state = runState();
    if (--state.depth > 0)
        return;
    platform::setWaitHook({});
    dropPending();
    state.progress.reset();
    if (qobject_cast<QApplication*>(QCoreApplication::instance())) {
        reopenWindows(state);
        QApplication::restoreOverrideCursor();
    }
}

bool QueuedInputDropper::DuringRun::active()
{
    return runState().depth > 0;
}

void QueuedInputDropper::DuringRun::showStep(const QString& text, int done, int total)
{
    RunState& state = runState();
    if (state.depth == 0 || !qobject_cast<QApplication*>(QCoreApplication::instance()))
        return;
    if (!state.progress) {
        // The run itself cannot be stopped, so there is nothing to cancel.
        state.progress = std::make_unique<QProgressDialog>(text, QString(), 0, total);
        state.progress->setObjectName("run progress");
        state.progress->setWindowTitle("Tamsel");
        state.progress->setAutoClose(false);
        state.progress->setAutoReset(false);
        state.progress->setMinimumDuration(1000);
    }
    state.progress->setLabelText(text);
    state.progress->setValue(done);
}
