#include "blockviewfindbar.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace
{

QToolButton* button(QWidget* parent, const QString& text, const QString& name)
{
    auto* b = new QToolButton(parent);
    b->setText(text);
    b->setAccessibleName(name);
    b->setToolTip(name);
    b->setAutoRaise(true);
    return b;
}

} // namespace

BlockViewFindBar::BlockViewFindBar(QWidget* parent)
    : QWidget(parent), edit(new QLineEdit(this)), matchCase(new QCheckBox(tr("Match &case"), this)),
      status(new QLabel(this))
{
    setObjectName("find bar");
    setAutoFillBackground(true);
    auto* label = new QLabel(tr("Find:"), this);
    label->setBuddy(edit);
    edit->setObjectName("find text");
    edit->setAccessibleName(tr("Find"));
    edit->installEventFilter(this);
    status->setObjectName("find status");
    auto* previous = button(this, tr("Previous"), tr("Find previous (Shift+F3)"));
    auto* next = button(this, tr("Next"), tr("Find next (F3)"));
    auto* hide = button(this, tr("Close"), tr("Close the find bar (Escape)"));

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    for (QWidget* w : std::initializer_list<QWidget*>{label, edit, previous, next, matchCase})
        layout->addWidget(w);
    layout->addWidget(status, 1);
    layout->addWidget(hide);

    connect(previous, &QToolButton::clicked, this, [this] { emit findRequested(true); });
    connect(next, &QToolButton::clicked, this, [this] { emit findRequested(false); });
    connect(hide, &QToolButton::clicked, this, &BlockViewFindBar::dismiss);
    connect(edit, &QLineEdit::textEdited, this, [this] { setStatus({}); });
}

QString BlockViewFindBar::text() const
{
    return edit->text();
}

bool BlockViewFindBar::caseSensitive() const
{
    return matchCase->isChecked();
}

void BlockViewFindBar::open(const QString& text)
{
    if (!text.isEmpty())
        edit->setText(text);
    setStatus({});
    show();
    edit->selectAll();
    edit->setFocus(Qt::ShortcutFocusReason);
}

void BlockViewFindBar::setStatus(const QString& text)
{
    status->setText(text);
    // Told with the field, so that a screen reader reading it says it too.
    edit->setAccessibleDescription(text);
}

void BlockViewFindBar::dismiss()
{
    hide();
    emit closed();
}

bool BlockViewFindBar::eventFilter(QObject* watched, QEvent* event)
{
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (watched != edit || !key)
        return QWidget::eventFilter(watched, event);
    auto* keyEvent = static_cast<QKeyEvent*>(event);
    if (event->type() == QEvent::ShortcutOverride) {
        // Ahead of any shortcut of the window, such as a dialog's Escape.
        const bool ours = keyEvent->key() == Qt::Key_Escape || keyEvent->key() == Qt::Key_F3;
        if (ours)
            event->accept();
        return false;
    }
    return handleKey(keyEvent);
}

bool BlockViewFindBar::handleKey(QKeyEvent* event)
{
    const bool shift = event->modifiers() & Qt::ShiftModifier;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F3:
        emit findRequested(shift);
        return true;
    case Qt::Key_Escape:
        dismiss();
        return true;
    default:
        return false;
    }
}
