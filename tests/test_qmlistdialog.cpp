// The report list dialog: its fixed box, the window height that follows
// the line count, and closing it modal and modeless.
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
    QTest::addColumn<int>("lines"); // -1: one line that the box wraps
    QTest::addColumn<bool>("modal");
    QTest::addColumn<int>("key"); // 0: the Close button
    QTest::newRow("empty, modeless") << "" << 1 << false << 0;
    QTest::newRow("markup stays text, modal") << "<b>a.rpt</b>\nb.rpt\nc.rpt" << 3 << true << 0;
    QTest::newRow("more than fits, modal, Escape")
        << QString("r.rpt\n").repeated(39) + "z.rpt" << 40 << true << int(Qt::Key_Escape);
    QTest::newRow("wrapped, modeless, Escape")
        << QString("wrapped ").repeated(30) << -1 << false << int(Qt::Key_Escape);
}

void TestQMListDialog::showAndClose()
{
    QFETCH(QString, text);
    QFETCH(int, lines);
    QFETCH(bool, modal);
    QFETCH(int, key);
    auto* dialog = new QMListDialog(text, nullptr, "ignored", modal, {});
    auto* label = widget<QLabel>(dialog, "ReportFileLabel");
    auto* edit = widget<QTextEdit>(dialog, "TextEdit");
    auto* close = widget<QPushButton>(dialog, "ClosePB");
    QCOMPARE(dialog->objectName() + dialog->windowTitle() + label->text() + close->text(),
             "ListDialogInformationOutput Report Files Generated: Close");
    QVERIFY(label->font().pointSize() == 12 && label->font().bold() && edit->isReadOnly());
    const int fh = QFontMetrics(QApplication::font()).height();
    const int textHeight = dialog->height() - label->height() - close->height() - 200;
    QCOMPARE(dialog->width(), 400);
    if (lines > 0)
        QCOMPARE(textHeight, lines * fh);
    else
        QVERIFY(textHeight >= 2 * fh);

    const auto useAndClose = [&](QWidget* shown) {
        QCOMPARE(edit->size(), QSize(350, 200)); // long texts scroll inside
        QCOMPARE(edit->verticalScrollBar()->isVisible(), lines > 10);
        QTest::keyClicks(edit, "xy");
        QCOMPARE(edit->toPlainText(), text);
        key ? QTest::keyClick(shown, Qt::Key(key)) : QTest::mouseClick(close, Qt::LeftButton);
    };
    DialogAnswerer answers;
    if (modal) {
        answers.handleDialog(useAndClose);
        dialog->exec();
    } else {
        dialog->show(); // modeless ones stay after closing, their owner deletes them
        useAndClose(dialog);
    }
    VERIFY_DIALOGS(answers);
    QCOMPARE(dialog->result(), key ? QDialog::Rejected : QDialog::Accepted);
    QVERIFY(!dialog->isVisible());
    delete dialog;
}

QTEST_MAIN(TestQMListDialog)
#include "test_qmlistdialog.moc"
