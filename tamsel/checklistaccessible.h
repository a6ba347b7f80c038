#pragma once

#include <QAccessibleWidget>
#include <QList>

class CheckList;

// What assistive technology sees of a CheckList: a list whose children are
// its rows, each a check box (see checklistaccessible.cpp). Row interfaces
// are made once and kept, so that a row keeps its identity for a reader.
class CheckListAccessible : public QAccessibleWidget
{
public:
    explicit CheckListAccessible(CheckList* list);
    ~CheckListAccessible() override;

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

private:
    CheckList* list() const;

    mutable QList<QAccessible::Id> rows;
};
