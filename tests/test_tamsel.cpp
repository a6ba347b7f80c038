// The tool dialog and the program around it: the refusal when the
// translators cannot be found, the window it opens, the ways it ends, and
// the default button following the tab in view.
#include "tamsel.h"

#include "app_qmfilelineedit.h"
#include "dialoganswerer.h"
#include "scratchdir.h"
#include "standins.h"
#include "zeb_standin.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTest>

class TestTamsel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setStyle(QStyleFactory::create("Windows")); } // as ours

    void runProgram_data()
    {
        QTest::addColumn<QString>("setting");  // "VARIABLE=value" changing one the stand-ins set
        QTest::addColumn<QString>("end");      // how the window ends; "": the refusal comes instead
        QTest::addColumn<QByteArray>("title"); // QRT_ONDREL_NAME; null: unset
        // Value "-": unset; "%d": the scratch directory. The run would look for a
        // bare name ("prog") on PATH, so the check does too.
        for (const char* setting :
             {"OKT_ZEB2MTX=-", "OKT_QRT2ZEB=-",
              "OKT_ZEB2MTX=", "OKT_QRT2ZEB=", "OKT_ZEB2MTX=%d/missing", "OKT_QRT2ZEB=%d/plain.txt",
              "OKT_QRT2ZEB=%d", "OKT_ZEB2MTX=prog"})
            QTest::newRow(setting) << setting << "" << QByteArray();
        QTest::newRow("Quit button") << ""
                                     << "quit" << QByteArray("Rüstung 2");
        QTest::newRow("Escape key") << ""
                                    << "escape" << QByteArray();
        QTest::newRow("close, other window open") << ""
                                                  << "close" << QByteArray("");
    }

    void runProgram()
    {
        QFETCH(QString, setting);
        QFETCH(QString, end);
        QFETCH(QByteArray, title);
        ScratchDir dir;
        Standins standins(dir.path());
        QVERIFY(dir.write("plain.txt", "not a program") && dir.write("prog", "#!/bin/sh\n", true));
        const QByteArray name = setting.section('=', 0, 0).toLatin1();
        const QString value = setting.section('=', 1).replace("%d", dir.path());
        if (!name.isEmpty())
            value == "-" ? qunsetenv(name) : qputenv(name, value.toUtf8());
        title.isNull() ? qunsetenv("QRT_ONDREL_NAME") : qputenv("QRT_ONDREL_NAME", title);

        DialogAnswerer answers;
        if (end.isEmpty())
            answers.pressButton("OK");
        QWidget other;
        QVariantList seen; // the title, whether 850 by 420 or what the tabs need, whether applied
        QTimer::singleShot(0, [&] {
            Tamsel* t = nullptr;
            for (QWidget* w : QApplication::topLevelWidgets())
                t = t ? t : qobject_cast<Tamsel*>(w);
            if (end.isEmpty() || !t)
                return;
            seen = {t->windowTitle(), t->size() == QSize(850, 420).expandedTo(t->minimumSize()),
                    false};
            QObject::connect(t, &Tamsel::applyButtonPressed, [&seen] { seen[2] = true; });
            if (end == "close")
                other.show();
            if (end == "quit")
                t->okButton()->click();
            else if (end == "escape")
                QTest::keyClick(t, Qt::Key_Escape);
            else
                t->close();
        });
        // Should the program hang, or open its window after a refusal, end its loop instead.
        QObject guard;
        QTimer::singleShot(10000, &guard, [] { QCoreApplication::exit(42); });
        const int terminated = ZEB_StandinTerminateCount();
        QCOMPARE(Tamsel::runProgram(), 0);
        VERIFY_DIALOGS(answers);
        QCOMPARE(ZEB_StandinTerminateCount(), terminated + 1);
        QCOMPARE(seen, end.isEmpty()
                           ? QVariantList()
                           : QVariantList({QString::fromUtf8(title), true, end == "quit"}));
        QCOMPARE(answers.boxes().join(""),
                 end.isEmpty() ? "Environment Problems: The ZEB2MTX or QRT2ZEB translators are "
                                 "not installed.\nYou must also set the OKT_QRT2ZEB and "
                                 "OKT_ZEB2MTX environment variables [OK] OK/ in Tamsel"
                               : "");
        QCOMPARE(answers.seen().value(0).icon, end.isEmpty() ? int(QMessageBox::Critical) : 0);
    }

    void defaultButtonFollowsTab()
    {
        ScratchDir dir;
        Standins standins(dir.path());
        Tamsel t;
        t.show();
        QVERIFY(QTest::qWaitForWindowExposed(&t));
        // Quit is default right after start; a dialog has one default at most.
        QVERIFY(t.okButton()->isDefault());
        // Caption, class and object name, start button's tool tip, the first box on Enter.
        const QStringList tabs{
            "ZEB Browser;ZEBBrowser;Start the GUI Browser for the selected components;"
            "No blocks selected",
            "ZEB->MTX Translator;ZEBMTXLator;Begin Translation;Missing File",
            "QRT->ZEB Translator;QRTZEBLator;Begin Translatiion;Missing Input File",
            "ZEB->ZEB Optimizer;ZEBZEBOpt;Begin Optimization;Missing Input File"};
        QCOMPARE(t.tabWidget()->count(), tabs.size());
        // Backwards, so that the first tab's button is made default by coming back.
        for (int index = tabs.size() - 1; index >= 0; --index) {
            QWidget* tab = t.tabWidget()->widget(index);
            t.tabWidget()->setCurrentIndex(index);
            QCOMPARE(tab->objectName(), tab->metaObject()->className());
            QString seen = t.tabWidget()->tabText(index) + ";" + tab->objectName() + ";";
            for (auto* button : t.findChildren<QPushButton*>()) // Quit's tool tip is empty
                seen += button->isDefault() ? button->toolTip() + ";" : "";
            if (index == 0) { // a readable file and no block ticked
                tab->findChild<QMFileLineEdit*>("inputFile")
                    ->setText(Standins::examplesDir() + "/beam.zeb");
                for (auto* button : tab->findChildren<QPushButton*>())
                    if (button->text() == "Clear")
                        button->click();
            }
            DialogAnswerer answers;
            answers.pressButton("OK");
            QTest::keyClick(&t, Qt::Key_Return);
            VERIFY_DIALOGS(answers);
            QCOMPARE(seen + answers.seen().constFirst().title, tabs[index]);
        }
        QVERIFY(t.isVisible()); // Quit was not pressed
    }
};

QTEST_MAIN(TestTamsel)
#include "test_tamsel.moc"
