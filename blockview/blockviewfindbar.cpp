#include "blockviewfindbar.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace
{

// A tool button that looks like a button: the theme's icon where there is
// one, else its text; the longer name for tool tips and screen readers.
QToolButton* button(QWidget* parent, const char* icon, const QString& text, const QString& name)
{
    auto* b = new QToolButton(parent);
    b->setText(text);
    b->setIcon(QIcon::fromTheme(QLatin1String(icon)));
    b->setToolButtonStyle(b->icon().isNull() ? Qt::ToolButtonTextOnly : Qt::ToolButtonIconOnly);
    b->setAccessibleName(name);
    b->setToolTip(name);
    return b;
}

// The interface font, whatever the page's: the bar is no part of the text.
QFont interfaceFont(const QWidget* widget)
{
    QFont font = QApplication::font(widget);
    font.setResolveMask(QFont::AllPropertiesResolved);
    return font;
}

} // namespace

BlockViewFindBar::BlockViewFindBar(QWidget* parent)
    : QWidget(parent), edit(new QLineEdit(this)), matchCase(new QCheckBox(tr("Match &case"), this)),
      status(new QLabel(this))
{
    setObjectName("find bar");
    setAutoFillBackground(true);
    setFont(interfaceFont(this));
    auto* label = new QLabel(tr("Find:"), this);
    label->setBuddy(edit);
    edit->setObjectName("find text");
    edit->setAccessibleName(tr("Find"));
    edit->installEventFilter(this);
    // Room for a word or two to find, whatever the status says.
    edit->setMinimumWidth(edit->fontMetrics().averageCharWidth() * minimumCharacters);
    status->setObjectName("find status");
    // The status gives way first: it takes what is left and is elided.
    status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    status->setMinimumWidth(0);
    auto* previous = button(this, "go-up", tr("Previous"), tr("Find previous (Shift+F3)"));
    auto* next = button(this, "go-down", tr("Next"), tr("Find next (F3)"));
    auto* hide =
        button(this, "window-close", QStringLiteral("\u00D7"), tr("Close the find bar (Escape)"));
    hide->setObjectName("close find bar");
    hide->setAutoRaise(true);

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
    fullStatus = text;
    // Whole in the tool tip and for screen readers, with the field too, so
    // that a screen reader reading the field says it.
    status->setToolTip(text);
    status->setAccessibleName(text);
    status->setAccessibleDescription(text);
    edit->setAccessibleDescription(text);
    elideStatus();
}

void BlockViewFindBar::elideStatus()
{
    status->setText(status->fontMetrics().elidedText(fullStatus, Qt::ElideRight, status->width()));
}

void BlockViewFindBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    elideStatus();
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
