#include "checklistaccessible.h"

#include "checklist.h"

#include <QPointer>

namespace
{

// One row of the list as a check box: its text is its name, its tick its
// checked state, and "Toggle" ticks it.
class RowAccessible : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    RowAccessible(CheckList* list, int row) : view(list), index(row) {}

    bool isValid() const override { return view && item(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return view ? view->window()->windowHandle() : nullptr; }
    QAccessibleInterface* focusChild() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override
    {
        return view ? QAccessible::queryAccessibleInterface(view.data()) : nullptr;
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QString text(QAccessible::Text t) const override
    {
        return t == QAccessible::Name && item() ? item()->text(0) : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override
    {
        if (!isValid())
            return QRect();
        const QRect local = view->visualItemRect(item());
        return QRect(view->viewport()->mapToGlobal(local.topLeft()), local.size());
    }
    QAccessible::Role role() const override { return QAccessible::CheckBox; }
    QAccessible::State state() const override
    {
        QAccessible::State s;
        if (!isValid())
            return s;
        s.checkable = true;
        s.checked = item()->checkState(0) == Qt::Checked;
        s.focusable = true;
        s.focused = view->hasFocus() && view->currentItem() == item();
        s.invisible = !view->viewport()->rect().intersects(view->visualItemRect(item()));
        s.disabled = !view->isEnabled();
        return s;
    }
    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override { return {toggleAction()}; }
    void doAction(const QString& name) override
    {
        if (name != toggleAction() || !isValid() || !view->isEnabled())
            return;
        const bool on = item()->checkState(0) == Qt::Checked;
        item()->setCheckState(0, on ? Qt::Unchecked : Qt::Checked);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QTreeWidgetItem* item() const { return view ? view->topLevelItem(index) : nullptr; }

    QPointer<CheckList> view;
    int index;
};

} // namespace

CheckListAccessible::CheckListAccessible(CheckList* list)
    : QAccessibleWidget(list, QAccessible::List)
{
}

CheckListAccessible::~CheckListAccessible()
{
    for (QAccessible::Id id : rows)
        QAccessible::deleteAccessibleInterface(id);
}

CheckList* CheckListAccessible::list() const
{
    return static_cast<CheckList*>(widget());
}

int CheckListAccessible::childCount() const
{
    return list()->topLevelItemCount();
}

QAccessibleInterface* CheckListAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    while (rows.size() <= index)
        rows.append(
            QAccessible::registerAccessibleInterface(new RowAccessible(list(), rows.size())));
    return QAccessible::accessibleInterface(rows.at(index));
}

int CheckListAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    for (int i = 0; i < rows.size(); ++i)
        if (QAccessible::accessibleInterface(rows.at(i)) == child)
            return i;
    return -1;
}

QAccessibleInterface* CheckListAccessible::childAt(int x, int y) const
{
    const QPoint local = list()->viewport()->mapFromGlobal(QPoint(x, y));
    QTreeWidgetItem* item = list()->itemAt(local);
    return item ? child(list()->indexOfTopLevelItem(item)) : nullptr;
}

QAccessibleInterface* CheckListAccessible::focusChild() const
{
    if (!list()->hasFocus() || !list()->currentItem())
        return nullptr;
    return child(list()->indexOfTopLevelItem(list()->currentItem()));
}
