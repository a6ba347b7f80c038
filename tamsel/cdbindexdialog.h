#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QString>

class BodyListModel;
class QKeyEvent;
class QScrollBar;
class QTableView;

// Lists the bodies of an HX DB file, index and description, and gives back
// the index of the highlighted one as text. Built anew for every choice.
// The table holds only the rows in sight and a scroll bar of its own moves
// them through the list, so a database of 150 million bodies opens as fast
// as one of twelve; the chosen body is kept apart from the rows, so that
// it stays the choice when it scrolls out of sight or the list is sorted.
class QCDBIndexDialog : public QDialog
{
    Q_OBJECT

public:
    QCDBIndexDialog(QWidget* parent, const char* name, QString file);

    QString selectedIndex() const { return chosenIndex; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void processSelect();

private:
    void setUpList();
    void setUpScroller();
    void fitRows();
    void showFrom(int row);
    void reveal(int row);
    void markChosen();
    void noteChoice();
    bool moveByKey(const QKeyEvent& key);
    bool typeIndex(const QKeyEvent& key);

    QTableView* bodyList = nullptr;
    QScrollBar* scroller = nullptr;
    BodyListModel* bodies = nullptr;
    int chosenBody = 0; // none
    bool marking = false;
    QString typed;
    QElapsedTimer sinceTyped;
    QString chosenIndex;
    QString dbFile;
};
