#include "checklist.h"

#include "checklistaccessible.h"

#include <QAccessible>
#include <QHeaderView>

namespace
{

QAccessibleInterface* accessibleList(const QString& key, QObject* object)
{
    if (key == QLatin1String("CheckList"))
        return new CheckListAccessible(static_cast<CheckList*>(object));
    return nullptr;
}

} // namespace

CheckList::CheckList(QWidget* parent) : QTreeWidget(parent)
{
    static const bool factoryInstalled = (QAccessible::installFactory(accessibleList), true);
    Q_UNUSED(factoryInstalled);
    setRootIsDecorated(false);
    setColumnCount(1);
    header()->hide();
    connect(this, &QTreeWidget::itemChanged, this, &CheckList::announceTick);
}

QTreeWidgetItem* CheckList::addRow(const QString& text)
{
    auto* item = new QTreeWidgetItem(this, {text});
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(0, Qt::Unchecked);
    return item;
}

// A screen reader says "checked" when the row changes, whoever ticked it.
void CheckList::announceTick(QTreeWidgetItem* item)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(this);
    QAccessibleInterface* row = list ? list->child(indexOfTopLevelItem(item)) : nullptr;
    if (!row)
        return;
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(row, changed);
    QAccessible::updateAccessibility(&event);
}
