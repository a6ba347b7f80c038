// The tool dialog and the program around it: the refusal when the
// translators cannot be found, the window it opens, the ways it ends, and
// the default button following the tab in view.
#include "tamsel.h"

#include "dialoganswerer.h"
#include "scratchdir.h"
#include "standins.h"
#include "zeb_standin.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

namespace
{

Tamsel* visibleTamsel()
{
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (auto* t = qobject_cast<Tamsel*>(w); t && t->isVisible())
            return t;
    }
    return nullptr;
}

int visibleTopLevels()
{
    int n = 0;
    for (QWidget* w : QApplication::topLevelWidgets())
        n += w->isVisible() ? 1 : 0;
    return n;
}

const QString refusalText = "The ZEB2MTX or QRT2ZEB translators are not installed.\n"
                            "You must also set the OKT_QRT2ZEB and OKT_ZEB2MTX environment "
                            "variables";

} // namespace

class TestTamsel : public QObject
{
    Q_OBJECT

private slots:
    void refusal_data();
    void refusal();
    void windowAndEnds_data();
    void windowAndEnds();
    void titleFollowsVariable_data();
    void titleFollowsVariable();
    void defaultButtonFollowsTab();
};

void TestTamsel::refusal_data()
{
    QTest::addColumn<QString>("zeb2mtx");
    QTest::addColumn<QString>("qrt2zeb");

    // "@x" is a real stand-in, "-" unset, "%d" the scratch directory.
    QTest::newRow("ZEB2MTX unset") << "-"
                                   << "@qrt2zeb-standin";
    QTest::newRow("QRT2ZEB unset") << "@zeb2mtx-standin"
                                   << "-";
    QTest::newRow("both unset") << "-"
                                << "-";
    QTest::newRow("ZEB2MTX empty") << ""
                                   << "@qrt2zeb-standin";
    QTest::newRow("QRT2ZEB empty") << "@zeb2mtx-standin"
                                   << "";
    QTest::newRow("ZEB2MTX missing file") << "%d/missing"
                                          << "@qrt2zeb-standin";
    QTest::newRow("QRT2ZEB not executable") << "@zeb2mtx-standin"
                                            << "%d/plain.txt";
    QTest::newRow("QRT2ZEB a directory") << "@zeb2mtx-standin"
                                         << "%d";
}

void TestTamsel::refusal()
{
    QFETCH(QString, zeb2mtx);
    QFETCH(QString, qrt2zeb);
    ScratchDir dir;
    Standins standins(dir.path());
    QVERIFY(dir.write("plain.txt", "not a program"));
    auto set = [&dir](const char* name, QString value) {
        if (value == "-") {
            qunsetenv(name);
            return;
        }
        if (value.startsWith('@'))
            value = Standins::program(value.mid(1));
        qputenv(name, value.replace("%d", dir.path()).toLocal8Bit());
    };
    set("OKT_ZEB2MTX", zeb2mtx);
    set("OKT_QRT2ZEB", qrt2zeb);

    const int terminated = ZEB_StandinTerminateCount();
    DialogAnswerer answers;
    answers.pressButton("OK");
    // Should the dialog open after all, end its loop rather than hang.
    QTimer guard;
    guard.callOnTimeout([] { QCoreApplication::exit(42); });
    guard.start(5000);
    QCOMPARE(Tamsel::runProgram(), 0);
    VERIFY_DIALOGS(answers);
    const auto& box = answers.seen().constFirst();
    QCOMPARE(box.title, QString("Environment Problems"));
    QCOMPARE(box.text, refusalText);
    QCOMPARE(box.buttons, QStringList{"OK"});
    QCOMPARE(box.icon, int(QMessageBox::Critical));
    QCOMPARE(box.parentClass, QString("Tamsel"));
    QCOMPARE(visibleTopLevels(), 0);
    QCOMPARE(ZEB_StandinTerminateCount(), terminated + 1);
}

void TestTamsel::windowAndEnds_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<bool>("applyEmitted");

    QTest::newRow("Quit button") << "quit" << true;
    QTest::newRow("Escape key") << "escape" << false;
    QTest::newRow("close with another window open") << "close-other-open" << false;
}

void TestTamsel::windowAndEnds()
{
    QFETCH(QString, how);
    QFETCH(bool, applyEmitted);
    ScratchDir dir;
    Standins standins(dir.path());
    qputenv("QRT_ONDREL_NAME", "Flex Prep 7");

    struct Seen {
        QString title, iconText;
        QSize size, minimum, iconSize;
        bool applied = false;
    } seen;
    QWidget other;
    QTimer::singleShot(0, [&] {
        Tamsel* t = visibleTamsel();
        if (!t)
            return QCoreApplication::exit(99);
        seen.title = t->windowTitle();
        seen.iconText = t->windowIconText();
        // 850 by 420, unless the tabs need more room in this font.
        seen.size = t->size();
        seen.minimum = t->minimumSize();
        seen.iconSize = t->windowIcon().availableSizes().value(0);
        QObject::connect(t, &Tamsel::applyButtonPressed, [&seen] { seen.applied = true; });
        if (how == "quit") {
            t->okButton()->click();
        } else if (how == "escape") {
            QTest::keyClick(t, Qt::Key_Escape);
        } else {
            if (how == "close-other-open")
                other.show();
            t->close();
        }
    });
    const int terminated = ZEB_StandinTerminateCount();
    QCOMPARE(Tamsel::runProgram(), 0);
    qunsetenv("QRT_ONDREL_NAME");

    QCOMPARE(seen.title, QString("Flex Prep 7"));
    QCOMPARE(seen.iconText, QString("Tamsel"));
    QCOMPARE(seen.size, QSize(850, 420).expandedTo(seen.minimum));
    QCOMPARE(seen.iconSize, QSize(24, 24));
    QCOMPARE(seen.applied, applyEmitted);
    QCOMPARE(ZEB_StandinTerminateCount(), terminated + 1);
}

void TestTamsel::titleFollowsVariable_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("title");

    QTest::newRow("unset") << QByteArray() << QString();
    QTest::newRow("empty") << QByteArray("") << QString();
    QTest::newRow("utf-8") << QByteArray("Rüstung 2") << QString("Rüstung 2");
}

void TestTamsel::titleFollowsVariable()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, title);
    ScratchDir dir;
    Standins standins(dir.path());
    value.isNull() ? qunsetenv("QRT_ONDREL_NAME") : qputenv("QRT_ONDREL_NAME", value);
    Tamsel t;
    qunsetenv("QRT_ONDREL_NAME");
    QVERIFY(t.environmentOk);
    QCOMPARE(t.windowTitle(), title);
}

void TestTamsel::defaultButtonFollowsTab()
{
    ScratchDir dir;
    Standins standins(dir.path());
    Tamsel t;
    t.show();
    QVERIFY(QTest::qWaitForWindowExposed(&t));
    const auto defaults = [&t] {
        QList<QPushButton*> on;
        for (QPushButton* b : t.findChildren<QPushButton*>()) {
            if (b->isDefault())
                on.append(b);
        }
        return on;
    };
    // Quit is the dialog's one button, and default right after start.
    QCOMPARE(t.okButton()->text(), QString("Quit"));
    QCOMPARE(defaults(), QList<QPushButton*>{t.okButton()});
    for (QPushButton* b : t.findChildren<QPushButton*>())
        QVERIFY(b == t.okButton() || t.tabWidget()->isAncestorOf(b));

    // Each tab's first message tells that Enter started that tab's work.
    const QList<QPair<QString, QString>> tabs = {{"QRT->ZEB Translator", "Missing Input File"},
                                                 {"ZEB->MTX Translator", "Missing File"}};
    for (const auto& [caption, firstMessage] : tabs) {
        int index = 0;
        while (index < t.tabWidget()->count() && t.tabWidget()->tabText(index) != caption)
            ++index;
        QVERIFY2(index < t.tabWidget()->count(), qPrintable(caption));
        t.tabWidget()->setCurrentIndex(index);
        const auto on = defaults();
        QCOMPARE(on.size(), 1);
        QVERIFY2(t.tabWidget()->widget(index)->isAncestorOf(on.first()), qPrintable(caption));
        DialogAnswerer answers;
        answers.pressButton("OK");
        QTest::keyClick(&t, Qt::Key_Return);
        VERIFY_DIALOGS(answers);
        QCOMPARE(answers.seen().constFirst().title, firstMessage);
    }
    QVERIFY(t.isVisible()); // Quit was not pressed
}

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Windows")); // as the program does
    TestTamsel test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_tamsel.moc"
