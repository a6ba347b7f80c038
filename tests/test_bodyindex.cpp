// The body index through the matrix tab: when the field opens after a
// change of the input, the body list from the mouse and the menu (Select and
// Cancel), the edit menu from the keyboard, and the index a run takes or
// refuses.
#include "zebmtxlator.h"

#include "dialoganswerer.h"
#include "scratchdir.h"
#include "standins.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

class TestBodyIndex : public QObject
{
    Q_OBJECT

private slots:
    void indexAfterAFileChange_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("index"); // left from a database of 12
        // double, menu or key (the keyboard's menu), ":", the row; !row: Cancel; -: no list
        QTest::addColumn<QString>("gesture");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QString>("answer"); // the run's box: the operand, or a message

        const QString range =
            "Invalid Index: The index should be a number from 1 to %1. [OK] OK/OK";
        const QString twelve = "twelve.MASTER";
        const QString noInput =
            "Missing File: You must supply an input ZEB or HX DB file. [OK] OK/OK";
        // clang-format off
        QTest::newRow("double click, 10") << twelve << "5" << "double:10" << true << twelve + "::10";
        QTest::newRow("menu, 7") << twelve << "5" << "menu:7" << true << twelve + "::7";
        QTest::newRow("list cancelled") << twelve << "5" << "double:!7" << true << twelve;
        QTest::newRow("edit menu by key") << twelve << "5" << "key:-" << true << twelve + "::5";
        QTest::newRow("smaller database") << "three.MASTER" << "5" << "" << true << range.arg(3);
        QTest::newRow("emptied field") << "three.MASTER" << "" << "" << true << range.arg(3);
        QTest::newRow("suffix in any case") << "a.MaStEr" << "5" << "" << true << "a.MaStEr::5";
        QTest::newRow("name without a dot") << "master" << "5" << "" << true << "master::5";
        QTest::newRow("name ending in a dot") << "a.master." << "5" << "" << false << "a.master.::5";
        QTest::newRow("suffix not last") << "a.master.bak" << "5" << "" << false << "a.master.bak::5";
        QTest::newRow("blank, file has it") << "b.master " << "5" << "" << true << range.arg(2);
        QTest::newRow("blank, file lacks it") << "c.master " << "5" << "" << false << "c.master::5";
        QTest::newRow("one body, menu") << "one.MASTER" << "5" << "menu:-" << false << "one.MASTER::5";
        QTest::newRow("ZEB, double click") << "beam.zeb" << "5" << "double:-" << false << "beam.zeb::5";
        QTest::newRow("ZEB file, 1 in blanks") << "beam.zeb" << " 1 " << "" << false << "beam.zeb";
        QTest::newRow("field cleared") << "" << "5" << "" << false << noInput;
        // clang-format on
    }

    void indexAfterAFileChange()
    {
        QFETCH(QString, gesture);
        QFETCH(QString, answer);
        ScratchDir dir;
        const QList<QPair<QString, int>> files{
            {"twelve.MASTER", 12}, {"three.MASTER", 3}, {"a.MaStEr", 6},
            {"master", 6},         {"a.master.", 6},    {"a.master.bak", 6},
            {"b.master ", 2},      {"c.master", 2},     {"one.MASTER", 1}};
        for (const auto& [name, bodies] : files)
            dir.write(name, "HXDB 1\n" + QByteArray("BODY  part: Bügel\n").repeated(bodies));
        Standins standins(dir.path());
        ZEBMTXLator tab(nullptr, "ZEBMTXLator");
        tab.show();
        auto* indexLE = tab.findChild<QLineEdit*>("inputFile");
        tab.findChild<QLineEdit*>("outputLE")->setText("out");
        tab.findChild<QLineEdit*>("inputCombo")->setText("twelve.MASTER");
        QFETCH(QString, index);
        indexLE->setText(index);
        QFETCH(QString, typed);
        tab.findChild<QLineEdit*>("inputCombo")->setText(typed);
        QTEST(indexLE->isEnabled(), "enabled");

        DialogAnswerer answers;
        const QString row = gesture.section(':', 1);
        if (gesture.startsWith("menu") || gesture.startsWith("key"))
            answers.chooseMenuEntry(
                gesture.startsWith("key") ? "Select All" : "Select a Flexible Body from HX DB");
        if (!gesture.isEmpty() && row != "-") {
            answers.handleDialog([row](QWidget* dialog) {
                auto* list = dialog->findChild<QTreeWidget*>();
                for (QTreeWidgetItem* item : list->findItems(row.mid(row.startsWith('!')), {}))
                    item->setSelected(true);
                dialog
                    ->findChild<QPushButton*>(
                        row.startsWith('!') ? "Cancel" : "Select the highlighted flexbody")
                    ->click();
            });
        }
        if (gesture.startsWith("menu")) { // through the window: only indexMenu may come
            const QPoint at = indexLE->mapTo(&tab, QPoint(5, 5));
            QTest::mousePress(tab.windowHandle(), Qt::RightButton, {}, at);
            QTest::mouseRelease(tab.windowHandle(), Qt::RightButton, {}, at);
        }
        if (gesture.startsWith("double"))
            QTest::mouseDClick(indexLE, Qt::LeftButton);
        QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, {5, 5}, {5, 5});
        if (gesture.startsWith("key"))
            QApplication::sendEvent(indexLE, &menuKey);
        VERIFY_DIALOGS(answers); // a popup menu does not block: it must be seen before the run
        answers.pressButton(answer.contains(' ') ? "OK" : "Cancel"); // a message, or the run's line
        tab.translate();
        VERIFY_DIALOGS(answers);
        const QString line = "info: " + Standins::program("zeb2mtx-standin") + " \"" + answer +
                             "\" -o \"out.mtx\" -F [OK|Cancel] OK/Cancel";
        QCOMPARE(answers.boxes().constLast(), answer.contains(' ') ? answer : line);
    }
};

QTEST_MAIN(TestBodyIndex)
#include "test_bodyindex.moc"
