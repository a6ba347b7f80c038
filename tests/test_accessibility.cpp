// What assistive technology sees: every control of the four tabs and of a
// browser window has a name, the browser window is a window, each frame is
// named by its own title, and a box ticked by an assistive tool acts as one
// ticked by the mouse.
#include "qrtzebcore.h"
#include "scratchdir.h"
#include "standins.h"
#include "tamsel.h"
#include "zebbrowser.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

namespace
{

QAccessibleInterface* face(QObject* object)
{
    return QAccessible::queryAccessibleInterface(object);
}

// The focusable widgets under root that a screen reader could not name.
QStringList unnamed(QWidget* root)
{
    QStringList found;
    for (QWidget* w : root->findChildren<QWidget*>()) {
        const bool focusable = w->focusPolicy() != Qt::NoFocus && w->isEnabled() &&
                               !w->focusProxy() &&
                               !qobject_cast<QWidget*>(w->parent())->focusProxy();
        if (focusable && face(w) && face(w)->text(QAccessible::Name).trimmed().isEmpty())
            found << QString("%1 \"%2\"").arg(w->metaObject()->className(), w->objectName());
    }
    return found;
}

QWidget* openBrowser(ZEBBrowser* tab)
{
    tab->findChild<QLineEdit*>("inputFile")->setText(Standins::examplesDir() + "/beam.zeb");
    for (auto* b : tab->findChildren<QPushButton*>())
        if (b->toolTip().startsWith("Start the GUI Browser"))
            b->click();
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == "browser")
            return w;
    return nullptr;
}

} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void everyControlNamed();
    void toggledByAnAssistiveTool_data();
    void toggledByAnAssistiveTool();
};

void TestAccessibility::everyControlNamed()
{
    ScratchDir dir;
    Standins standins(dir.path());
    Tamsel dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    for (int tab = 0; tab < dialog.tabWidget()->count(); ++tab) {
        dialog.tabWidget()->setCurrentIndex(tab);
        QWidget* page = dialog.tabWidget()->widget(tab);
        QVERIFY2(unnamed(page).isEmpty(), qPrintable(unnamed(page).join(", ")));
        for (auto* frame : page->findChildren<QGroupBox*>())
            if (!frame->title().isEmpty())
                QCOMPARE(face(frame)->text(QAccessible::Name), frame->title());
    }
    QWidget* browser = openBrowser(dialog.zebBrowser);
    QVERIFY(browser);
    QCOMPARE(face(browser)->role(), QAccessible::Window);
    QCOMPARE(face(browser)->text(QAccessible::Name), "Ondrel Tamsel ZEB Browser");
    QVERIFY2(unnamed(browser).isEmpty(), qPrintable(unnamed(browser).join(", ")));
    browser->close();
}

void TestAccessibility::toggledByAnAssistiveTool_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("follower"); // a control that follows the box
    QTest::addColumn<bool>("enabled");     // the follower after the tick
    QTest::addColumn<QString>("option");   // in the write options after the tick
    QTest::newRow("coarsening") << "Apply Mesh Coarsening Algorithm"
                                << "meshResSL" << true << "coarsen(";
    QTest::newRow("rigid only") << "Rigid-Only ZEB"
                                << "invarCB" << false << "";
}

void TestAccessibility::toggledByAnAssistiveTool()
{
    QFETCH(QString, box);
    QFETCH(QString, follower);
    QFETCH(bool, enabled);
    QFETCH(QString, option);
    QRTZEBCore panel(nullptr, "panel");
    QCheckBox* check = nullptr;
    for (auto* b : panel.findChildren<QCheckBox*>())
        check = b->text() == box ? b : check;
    QVERIFY(check && !check->isChecked());
    QAccessibleActionInterface* actions = face(check)->actionInterface();
    QVERIFY(actions);
    actions->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(check->isChecked());
    QWidget* follows = panel.findChild<QWidget*>(follower);
    QVERIFY(follows);
    QCOMPARE(follows->isEnabled(), enabled);
    QVERIFY(panel.writeOptions().contains(option));
    actions->doAction(QAccessibleActionInterface::toggleAction()); // and back
    QCOMPARE(follows->isEnabled(), !enabled);
}

QTEST_MAIN(TestAccessibility)
#include "test_accessibility.moc"
