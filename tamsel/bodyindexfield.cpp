#include "bodyindexfield.h"

#include "cdbindexdialog.h"
#include "messagebox.h"
#include "zeb.h"

#include <QContextMenuEvent>
#include <QCursor>
#include <QIntValidator>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>

BodyIndexField::BodyIndexField(QWidget* owner, QLineEdit* field)
    : QObject(owner), tab(owner), fileField(field)
{
    indexEdit = new QLineEdit(tab);
    indexEdit->setObjectName("inputFile");
    indexEdit->setFixedSize(40, 25);
    indexEdit->setText("1");
    indexEdit->setEnabled(false);
    indexEdit->installEventFilter(tab);

    indexMenu = new QMenu;
    indexMenu->setObjectName("Select Index");
    indexMenu->addAction("Select a Flexible Body from HX DB", this,
                         &BodyIndexField::selectIndexFromCDB);
}

// The menu has no parent; it goes with the tab rather than leak.
BodyIndexField::~BodyIndexField()
{
    delete indexMenu;
}

void BodyIndexField::checkCDB()
{
    const QString file = fileField->text();
    const QString suffix = file.section('.', -1, -1).trimmed().toLower();
    // Asked on every change, whatever the name looks like: the library
    // decides what a database is.
    const int bodyCount = ZEB_BodyCount(file.toLocal8Bit().constData());
    if (suffix == "master" && bodyCount >= 2)
        setRange(bodyCount);
    else
        indexEdit->setEnabled(false);
}

// Opens the field for indices 1 to the count; the text stays as it is.
void BodyIndexField::setRange(int bodyCount)
{
    const QValidator* previous = indexEdit->validator();
    indexEdit->setEnabled(true);
    indexEdit->setValidator(new QIntValidator(1, bodyCount, indexEdit));
    delete previous;
}

void BodyIndexField::selectIndexFromCDB()
{
    if (!indexEdit->isEnabled())
        return;
    QCDBIndexDialog dialog(tab, "INDEXDIALOG", fileField->text());
    // A cancelled choice starts again from the first body.
    indexEdit->setText(dialog.exec() == 1 ? dialog.selectedIndex() : QString("1"));
}

bool BodyIndexField::filterEvent(QObject* watched, QEvent* event)
{
    if (watched != indexEdit)
        return false;
    if (event->type() == QEvent::MouseButtonDblClick &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        selectIndexFromCDB();
        return true;
    }
    if (event->type() == QEvent::MouseButtonPress &&
        static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
        indexMenu->exec(QCursor::pos());
        return true;
    }
    // The right button belongs to indexMenu alone; a menu asked for from the
    // keyboard is the line edit's own.
    return event->type() == QEvent::ContextMenu &&
           static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Mouse;
}

bool BodyIndexField::checkIndex() const
{
    if (!indexEdit->isEnabled())
        return true;
    const auto* validator = qobject_cast<const QIntValidator*>(indexEdit->validator());
    if (!validator)
        return true;
    QString text = indexEdit->text();
    int position = 0;
    if (validator->validate(text, position) == QValidator::Acceptable)
        return true;
    MessageBox::warn("Invalid Index", QString("The index should be a number from %1 to %2.")
                                          .arg(QString::number(validator->bottom()),
                                               QString::number(validator->top())));
    return false;
}

QString BodyIndexField::inputOperand() const
{
    const QString index = indexEdit->text().trimmed();
    const QString file = fileField->text().trimmed();
    return index == "1" ? file : file + "::" + index;
}
