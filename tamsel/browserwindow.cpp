#include "browserwindow.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QGridLayout>
#include <QPushButton>
#include <QShowEvent>
#include <QTabBar>
#include <QTabWidget>

namespace
{

// A plain top-level widget would be announced as a filler.
QAccessibleInterface* accessibleWindow(const QString& key, QObject* object)
{
    if (key == QLatin1String("BrowserWindow") && object && object->isWidgetType())
        return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Window);
    return nullptr;
}

} // namespace

BrowserWindow::BrowserWindow() : QWidget(nullptr)
{
    static const bool factoryInstalled = (QAccessible::installFactory(accessibleWindow), true);
    Q_UNUSED(factoryInstalled);
    setObjectName("browser");
    setAttribute(Qt::WA_DeleteOnClose);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(4, 4, 4, 4);
    tabWidget = new QTabWidget(this);
    tabWidget->setObjectName("tabwidget");
    grid->addWidget(tabWidget, 0, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    auto* close = new QPushButton("Close", this);
    close->setObjectName("close_btn");
    grid->addWidget(close, 1, 1);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    // Queued: the click is seen before the tab bar has changed the page.
    connect(tabWidget->tabBar(), &QTabBar::tabBarClicked, this, &BrowserWindow::focusPage,
            Qt::QueuedConnection);
}

void BrowserWindow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        focusPage();
}

// The view the page shows, not a switch or button above it; a page that
// has none keeps the focus where it is.
void BrowserWindow::focusPage()
{
    QWidget* page = tabWidget->currentWidget();
    if (!page)
        return;
    for (auto* view : page->findChildren<QAbstractScrollArea*>()) {
        if (view->isVisibleTo(page) && view->focusPolicy() != Qt::NoFocus) {
            view->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}
