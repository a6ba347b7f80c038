#pragma once

#include <QTreeWidget>

// A one-column list of rows that the user ticks. Assistive technology sees
// each row as a check box with its checked state, and its "Toggle" ticks
// the row instead of selecting it.
class CheckList : public QTreeWidget
{
    Q_OBJECT

public:
    explicit CheckList(QWidget* parent = nullptr);

    // A new row, unticked, at the end.
    QTreeWidgetItem* addRow(const QString& text);

private:
    void announceTick(QTreeWidgetItem* item);
};
