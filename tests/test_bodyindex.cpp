// The body index through the matrix tab: when the field opens after a
// change of the input, the body list from the mouse and the menu (Select and
// Cancel), the edit menu from the keyboard, and the index a run takes or
// refuses.
#include "cdbindexdialog.h"
#include "zebmtxlator.h"

#include "dialoganswerer.h"
#include "residentmemory.h"
#include "scratchdir.h"
#include "standins.h"

#include <QtWidgets>

class TestBodyIndex : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setKeyboardInputInterval(60000); } // typed at any pace
    void indexAfterAFileChange_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("index"); // left from a database of 12
        // double, menu or key (the keyboard's menu), ":", the row; !row: Cancel; -: no list
        QTest::addColumn<QString>("gesture");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QString>("answer"); // the run's box: the operand, or a message

        // clang-format off
        const QString range = "Invalid Index: The index should be a number from 1 to %1. [OK] OK/OK", twelve = "twelve.MASTER";
        const QString noInput = "Missing File: You must supply an input ZEB or HX DB file. [OK] OK/OK";
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
        // clang-format off
        for (const auto& [name, bodies] : QList<QPair<QString, int>>{{"twelve.MASTER", 12}, {"three.MASTER", 3}, {"a.MaStEr", 6},
                 {"master", 6}, {"a.master.", 6}, {"a.master.bak", 6}, {"b.master ", 2}, {"c.master", 2}, {"one.MASTER", 1}})
            dir.write(name, "HXDB 1\n" + QByteArray("BODY  part: Bügel\n").repeated(bodies));
        // clang-format on
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
        if (!gesture.isEmpty() && row != "-")
            answers.handleDialog([row](QWidget* dialog) { // the row found as a user types it
                const char* button =
                    row.startsWith('!') ? "Cancel" : "Select the highlighted flexbody";
                QTest::keyClicks(dialog->findChild<QTableView*>(), row.mid(row.startsWith('!')));
                dialog->findChild<QPushButton*>(button)->click();
            });
        if (gesture.startsWith("menu")) // through the window: only indexMenu may come
            QTest::mouseClick(tab.windowHandle(), Qt::RightButton, {},
                              indexLE->mapTo(&tab, QPoint(5, 5)));
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

    // The list's order from the index alone, in both directions, and by the
    // description where that can be had, after clicks on the headers, read a
    // page at a time through the scroll bar; the highlighted body stays the
    // choice through a sort and out of sight, and keys move it through the
    // whole list; a million bodies cost no more memory than the rows in sight.
    void bigList_data()
    {
        QTest::addColumn<int>("bodies");
        QTest::addColumn<int>("group");        // bodies 1..group, ... share a description, falling
        QTest::addColumn<QString>("pick");     // the body typed before the gestures
        QTest::addColumn<QString>("gestures"); // headers I index, B body info; keys Up, End
        QTest::addColumn<QString>("rows");     // from the top, or "text order": all of it
        QTest::addColumn<QString>("answer");   // the Select button's
        // clang-format off
        QTest::newRow("12, as text")                 << 12 << 1 << "10" << ""   << "1 10 11 12 2" << "10";
        QTest::newRow("12, by description")          << 12 << 1 << "2"  << "B"  << "12 11 10 9 8" << "2";
        QTest::newRow("12, description and back")    << 12 << 1 << "3"  << "BI" << "1 10 11 12 2" << "3";
        QTest::newRow("12 in threes, ties by index") << 12 << 3 << "11" << "B"  << "10 11 12 7 8" << "11";
        QTest::newRow("12 in threes, down")          << 12 << 3 << "11" << "BB" << "1 2 3 4 5"    << "11";
        QTest::newRow("12345, every row")            << 12345 << 1 << "12" << "" << "text order"  << "12";
        QTest::newRow("a million, as text")          << 1000000 << 1 << "1000" << "" << "1 10 100 1000 10000" << "1000";
        QTest::newRow("a million, down")             << 1000000 << 1 << "100" << "I" << "999999 999998 999997 999996 999995" << "100";
        QTest::newRow("a million, End, Up")          << 1000000 << 1 << "1000" << "EU" << "1 10 100" << "999998";
        QTest::newRow("a million, description too costly") << 1000000 << 1 << "1000" << "B" << "1 10 100 1000 10000" << "1000";
        // clang-format on
    }

    void bigList()
    {
        QFETCH(int, bodies);
        QFETCH(int, group);
        QFETCH(QString, rows);
        ScratchDir dir;
        QByteArray text = "HXDB 1\n";
        QStringList all; // every body's number, in text order
        for (int body = 1; body <= bodies; ++body) {
            text += "BODY " + QByteArray::number(999999 - (body - 1) / group) + '\n';
            all << QString::number(body);
        }
        QVERIFY(dir.write("big.MASTER", text));
        const qint64 before = residentKiB();
        QCDBIndexDialog dialog(nullptr, "INDEXDIALOG", "big.MASTER");
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        auto* list = dialog.findChild<QTableView*>();
        QCOMPARE(QAccessible::queryAccessibleInterface(list)->text(QAccessible::Name),
                 "Select a flexible body from the HX DB");
        QFETCH(QString, pick);
        QTest::keyClicks(list, pick);
        QFETCH(QString, gestures);
        for (const QChar gesture : gestures) {
            QHeaderView* header = list->horizontalHeader();
            const int x = header->sectionViewportPosition(gesture == 'I' ? 0 : 1) + 5;
            if (gesture == 'I' || gesture == 'B')
                QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, {x, 5});
            else
                QTest::keyClick(list, gesture == 'E' ? Qt::Key_End : Qt::Key_Up);
        }
        QVERIFY2(residentKiB() - before < 64 * 1024, "more than 64 MB for the list");
        QFETCH(QString, answer); // in sight and highlighted
        QCOMPARE(list->selectionModel()->selectedRows().value(0).data().toString(), answer);
        all.sort();
        const QStringList expected = rows == "text order" ? all : rows.split(' ');
        auto* scroller = dialog.findChild<QScrollBar*>("bodyScroller");
        QAbstractItemModel* model = list->model();
        QStringList seen;
        while (seen.size() < expected.size()) {
            scroller->setValue(int(seen.size()));
            const int first = scroller->value();
            QVERIFY(model->rowCount() > seen.size() - first);
            for (int row = int(seen.size()) - first; row < model->rowCount(); ++row)
                seen << model->index(row, 0).data().toString();
        }
        QCOMPARE(seen.mid(0, expected.size()), expected);
        dialog.findChild<QPushButton*>("Select the highlighted flexbody")->click();
        QCOMPARE(dialog.selectedIndex(), answer);
    }
};

QTEST_MAIN(TestBodyIndex)
#include "test_bodyindex.moc"
