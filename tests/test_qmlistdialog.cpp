// The two list dialogs, the report list and the body list: their texts, the
// window that grows by a line per line shown or body listed, and closing them.
#include "cdbindexdialog.h"
#include "qmlistdialog.h"

#include "qrtroad_helpers.h"
#include "scratchdir.h"

#include <QApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <QTextEdit>

#include <memory>

class TestQMListDialog : public QObject
{
    Q_OBJECT

private slots:
    void showAndClose_data()
    {
        QTest::addColumn<QString>("text"); // of the report list; "n bodies": the body list
        QTest::addColumn<int>("lines");
        QTest::addColumn<int>("key"); // 0: the Close button
        QTest::newRow("empty") << "" << 1 << 0;
        QTest::newRow("markup stays text") << "<b>a.rpt</b>\nb.rpt\nc.rpt" << 3 << 0;
        QTest::newRow("more than fits, Escape")
            << QString("r.rpt\n").repeated(39) + "z.rpt" << 40 << int(Qt::Key_Escape);
        QTest::newRow("12 bodies") << "12 bodies" << 12 << int(Qt::Key_Escape);
    }

    // Modeless here; the script file and body index tests drive the modal forms.
    void showAndClose()
    {
        QFETCH(QString, text);
        QFETCH(int, lines);
        QFETCH(int, key);
        ScratchDir dir;
        const bool bodies = text.endsWith("bodies");
        QVERIFY(
            dir.write("db.MASTER", "HXDB 1\n" + QByteArray("BODY  part: Bügel\n").repeated(lines)));
        const std::unique_ptr<QDialog> dialog(
            bodies ? static_cast<QDialog*>(new QCDBIndexDialog(nullptr, "INDEXDIALOG", "db.MASTER"))
                   : new QMListDialog(text, nullptr, "ignored", false, {}));
        auto* label = widget<QLabel>(dialog.get(), "ReportFileLabel");
        auto* button = dialog->findChild<QPushButton*>(); // Close, or Select
        QCOMPARE(dialog->objectName() + dialog->windowTitle() + label->text() + button->text(),
                 "ListDialogInformation" +
                     QString(bodies ? "Select a flexible body from the HX DB: Select"
                                    : "Output Report Files Generated: Close"));
        QVERIFY(label->font().pointSize() == 12 && label->font().bold());
        QCOMPARE(dialog->width(), 400);
        QCOMPARE(dialog->height() - label->height() - button->height() - 200,
                 lines * QFontMetrics(QApplication::font()).height());
        dialog->show();
        if (bodies) { // rows sorted as text; no sort arrow, yet a header click sorts
            auto* list = dialog->findChild<QTableView*>();
            QAbstractItemModel* model = list->model();
            QString seen = list->toolTip() + model->headerData(0, Qt::Horizontal).toString() +
                           model->headerData(1, Qt::Horizontal).toString() +
                           QString::number(model->rowCount()) +
                           model->index(0, 1).data().toString();
            for (int i = 0; i < 3; ++i)
                seen += model->index(i, 0).data().toString() + " ";
            QTest::mouseClick(button, Qt::LeftButton); // Select without a row: the list stays
            QTest::mouseClick(list->horizontalHeader()->viewport(), Qt::LeftButton, {}, {5, 5});
            QCOMPARE(seen + model->index(0, 0).data().toString(),
                     "Flexible Bodies in HX DBIndexBody Info12 part: Bügel1 10 11 9");
            QVERIFY(dialog->isVisible() && !list->horizontalHeader()->isSortIndicatorShown());
        } else {
            auto* edit = widget<QTextEdit>(dialog.get(), "TextEdit");
            QCOMPARE(edit->size(), QSize(350, 200)); // long texts scroll inside
            QTest::keyClicks(edit, "xy");
            QCOMPARE(edit->toPlainText(), text);
        }
        key ? QTest::keyClick(dialog.get(), Qt::Key(key))
            : QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(dialog->result(), key ? QDialog::Rejected : QDialog::Accepted);
        QVERIFY(!dialog->isVisible());
    }
};

QTEST_MAIN(TestQMListDialog)
#include "test_qmlistdialog.moc"
