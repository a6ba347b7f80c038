// The report list dialog: its fixed box, the window height that follows
// the line count, and closing it.
#include "qmlistdialog.h"

#include "qrtroad_helpers.h"

#include <QApplication>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTextEdit>

class TestQMListDialog : public QObject
{
    Q_OBJECT

private slots:
    void showAndClose_data();
    void showAndClose();
};

void TestQMListDialog::showAndClose_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("key"); // 0: the Close button
    QTest::newRow("empty") << "" << 1 << 0;
    QTest::newRow("markup stays text") << "<b>a.rpt</b>\nb.rpt\nc.rpt" << 3 << 0;
    QTest::newRow("more than fits, Escape")
        << QString("r.rpt\n").repeated(39) + "z.rpt" << 40 << int(Qt::Key_Escape);
}

// Modeless here; the script file test drives the modal form.
void TestQMListDialog::showAndClose()
{
    QFETCH(QString, text);
    QFETCH(int, lines);
    QFETCH(int, key);
    QMListDialog dialog(text, nullptr, "ignored", false, {});
    auto* label = widget<QLabel>(&dialog, "ReportFileLabel");
    auto* edit = widget<QTextEdit>(&dialog, "TextEdit");
    auto* close = widget<QPushButton>(&dialog, "ClosePB");
    QCOMPARE(dialog.objectName() + dialog.windowTitle() + label->text() + close->text(),
             "ListDialogInformationOutput Report Files Generated: Close");
    QVERIFY(label->font().pointSize() == 12 && label->font().bold() && edit->isReadOnly());
    QCOMPARE(dialog.width(), 400);
    QCOMPARE(dialog.height() - label->height() - close->height() - 200,
             lines * QFontMetrics(QApplication::font()).height());
    dialog.show();
    QCOMPARE(edit->size(), QSize(350, 200)); // long texts scroll inside
    QCOMPARE(edit->verticalScrollBar()->isVisible(), lines > 10);
    QTest::keyClicks(edit, "xy");
    QCOMPARE(edit->toPlainText(), text);
    key ? QTest::keyClick(&dialog, Qt::Key(key)) : QTest::mouseClick(close, Qt::LeftButton);
    QCOMPARE(dialog.result(), key ? QDialog::Rejected : QDialog::Accepted);
    QVERIFY(!dialog.isVisible());
}

QTEST_MAIN(TestQMListDialog)
#include "test_qmlistdialog.moc"
