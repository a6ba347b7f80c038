#pragma once

#include <QDialog>
#include <QString>

class QTreeWidget;

// Lists the bodies of an HX DB file, index and description, and gives back
// the index of the highlighted one as text. Built anew for every choice.
class QCDBIndexDialog : public QDialog
{
    Q_OBJECT

public:
    QCDBIndexDialog(QWidget* parent, const char* name, QString dbFile);

    QString selectedIndex() const { return chosenIndex; }

private slots:
    void processSelect();

private:
    int fillList();

    QTreeWidget* bodyList = nullptr;
    QString chosenIndex;
    QString dbFile;
};
