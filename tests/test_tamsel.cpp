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
    void runProgram_data();
    void runProgram();
    void defaultButtonFollowsTab();
};

void TestTamsel::runProgram_data()
{
    QTest::addColumn<QString>("variable"); // one the stand-ins set, changed so
    QTest::addColumn<QString>("value");    // "-": unset, "%d": the scratch directory
    QTest::addColumn<QString>("end");      // how the window ends; "": the refusal comes instead
    QTest::addColumn<QByteArray>("title"); // QRT_ONDREL_NAME; null: unset

    const QByteArray unset;
    // clang-format off
    QTest::newRow("ZEB2MTX unset")          << "OKT_ZEB2MTX" << "-"            << "" << unset;
    QTest::newRow("QRT2ZEB unset")          << "OKT_QRT2ZEB" << "-"            << "" << unset;
    QTest::newRow("ZEB2MTX empty")          << "OKT_ZEB2MTX" << ""             << "" << unset;
    QTest::newRow("QRT2ZEB empty")          << "OKT_QRT2ZEB" << ""             << "" << unset;
    QTest::newRow("ZEB2MTX missing file")   << "OKT_ZEB2MTX" << "%d/missing"   << "" << unset;
    QTest::newRow("QRT2ZEB not executable") << "OKT_QRT2ZEB" << "%d/plain.txt" << "" << unset;
    QTest::newRow("QRT2ZEB a directory")    << "OKT_QRT2ZEB" << "%d"           << "" << unset;
    // The run would look for a bare name on PATH, so the check does too.
    QTest::newRow("ZEB2MTX only in the working directory") << "OKT_ZEB2MTX" << "prog" << "" << unset;
    QTest::newRow("Quit button")            << ""            << ""             << "quit"   << QByteArray("Rüstung 2");
    QTest::newRow("Escape key")             << ""            << ""             << "escape" << unset;
    QTest::newRow("close, other window open") << ""          << ""             << "close"  << QByteArray("");
    // clang-format on
}

void TestTamsel::runProgram()
{
    QFETCH(QString, variable);
    QFETCH(QString, value);
    QFETCH(QString, end);
    QFETCH(QByteArray, title);
    ScratchDir dir;
    Standins standins(dir.path());
    QVERIFY(dir.write("plain.txt", "not a program") && dir.write("prog", "#!/bin/sh\n", true));
    const QByteArray name = variable.toLatin1();
    if (!name.isEmpty())
        value == "-" ? qunsetenv(name) : qputenv(name, value.replace("%d", dir.path()).toUtf8());
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
        seen = {t->windowTitle(), t->size() == QSize(850, 420).expandedTo(t->minimumSize()), false};
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
    if (!end.isEmpty()) {
        QCOMPARE(seen, (QVariantList{QString::fromUtf8(title), true, end == "quit"}));
        return;
    }
    const auto& box = answers.seen().constFirst();
    QCOMPARE(box.title + " " + box.buttons.join(',') + " " + box.parentClass,
             QString("Environment Problems OK Tamsel"));
    QCOMPARE(box.icon, int(QMessageBox::Critical));
    QCOMPARE(box.text, "The ZEB2MTX or QRT2ZEB translators are not installed.\nYou must also set "
                       "the OKT_QRT2ZEB and OKT_ZEB2MTX environment variables");
}

void TestTamsel::defaultButtonFollowsTab()
{
    ScratchDir dir;
    Standins standins(dir.path());
    Tamsel t;
    t.show();
    QVERIFY(QTest::qWaitForWindowExposed(&t));
    // Quit is default right after start; a dialog has one default at most.
    QVERIFY(t.okButton()->isDefault());
    // Caption, object name and class, start button's tool tip, the first box on Enter.
    const QList<QStringList> tabs{
        {"ZEB Browser", "ZEBBrowser", "Start the GUI Browser for the selected components",
         "No blocks selected"},
        {"ZEB->MTX Translator", "ZEBMTXLator", "Begin Translation", "Missing File"},
        {"QRT->ZEB Translator", "QRTZEBLator", "Begin Translatiion", "Missing Input File"},
        {"ZEB->ZEB Optimizer", "ZEBZEBOpt", "Begin Optimization", "Missing Input File"}};
    QCOMPARE(t.tabWidget()->count(), tabs.size());
    // Backwards, so that the first tab's button is made default by coming back.
    for (int index = tabs.size() - 1; index >= 0; --index) {
        QWidget* tab = t.tabWidget()->widget(index);
        QCOMPARE((QStringList{t.tabWidget()->tabText(index), tab->objectName()}),
                 tabs[index].mid(0, 2));
        QCOMPARE(tab->metaObject()->className(), tabs[index][1]);
        t.tabWidget()->setCurrentIndex(index);
        QString defaults; // the tool tips of the default buttons, Quit's empty
        for (auto* button : t.findChildren<QPushButton*>())
            defaults += button->isDefault() ? button->toolTip() + ";" : "";
        QCOMPARE(defaults, tabs[index][2] + ";");
        if (index == 0) { // a readable file and no block ticked
            auto* input = tab->findChild<QMFileLineEdit*>("inputFile");
            QVERIFY(input);
            input->setText(Standins::examplesDir() + "/beam.zeb");
            for (auto* button : tab->findChildren<QPushButton*>())
                if (button->text() == "Clear")
                    button->click();
        }
        DialogAnswerer answers;
        answers.pressButton("OK");
        QTest::keyClick(&t, Qt::Key_Return);
        VERIFY_DIALOGS(answers);
        QCOMPARE(answers.seen().constFirst().title, tabs[index][3]);
    }
    QVERIFY(t.isVisible()); // Quit was not pressed
}

QTEST_MAIN(TestTamsel)
#include "test_tamsel.moc"
