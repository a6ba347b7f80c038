#pragma once

#include <QDialog>
#include <QString>

class BodyListModel;
class QTableView;

// Lists the bodies of an HX DB file, index and description, and gives back
// the index of the highlighted one as text. Built anew for every choice.
// Rows are made as they are shown, so a database of millions of bodies
// opens as fast as one of twelve.
class QCDBIndexDialog : public QDialog
{
    Q_OBJECT

public:
    QCDBIndexDialog(QWidget* parent, const char* name, QString dbFile);

    QString selectedIndex() const { return chosenIndex; }

private slots:
    void processSelect();

private:
    void setUpList();

    QTableView* bodyList = nullptr;
    BodyListModel* bodies = nullptr;
    QString chosenIndex;
    QString dbFile;
};
