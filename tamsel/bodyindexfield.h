#pragma once

#include <QObject>
#include <QString>

class QEvent;
class QLineEdit;
class QMenu;

// The body index of a tab whose input is a ZEB file or one body of an HX DB
// file: the index field, its menu, and what they do. The field opens only
// for a database of two bodies or more, takes numbers from 1 to the count,
// and lets the user pick the body from a list.
//
// The tab keeps the field and the menu as its own members, installs itself
// as the field's event filter (done here), and forwards its checkCDB(),
// selectIndexFromCDB() and eventFilter() here. A change of the file field
// (filerow::addIndexField) and the menu entry call this object directly.
class BodyIndexField : public QObject
{
    Q_OBJECT

public:
    // Creates the index field as a child of the tab; fileField is read
    // whenever the file is needed.
    BodyIndexField(QWidget* tab, QLineEdit* fileField);
    ~BodyIndexField() override;

    QLineEdit* lineEdit() const { return indexEdit; }
    QMenu* menu() const { return indexMenu; }

    void checkCDB();
    void selectIndexFromCDB();
    // True when the event is the field's and has been dealt with here.
    bool filterEvent(QObject* watched, QEvent* event);

    // The check before a run: true when the index may go to the tool, else
    // the user has been warned.
    bool checkIndex() const;

    // The input as the matrix translator and the optimizer pass it: the
    // stripped file name, with "::" and the stripped index unless it is "1".
    QString inputOperand() const;

private:
    void setRange(int bodyCount);

    QWidget* tab;
    QLineEdit* fileField;
    QLineEdit* indexEdit;
    QMenu* indexMenu;
};
