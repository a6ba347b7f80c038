#include "queuedinputdropper.h"

#include "platform/wait.h"

#include <QCoreApplication>
#include <QEvent>

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

QueuedInputDropper::DuringRun::DuringRun()
{
    platform::setWaitHook(&QueuedInputDropper::dropPending);
}

QueuedInputDropper::DuringRun::~DuringRun()
{
    platform::setWaitHook({});
    dropPending();
}
