// What assistive technology sees and does, walked through QAccessible as a
// screen reader would: every window names each control it can reach, a
// control's accessible action acts as a click does, and the browser window
// scrolls its page from the keyboard at once.
#include "blockpage.h"
#include "cdbindexdialog.h"
#include "qmlistdialog.h"
#include "scratchdir.h"
#include "standins.h"
#include "tamsel.h"
#include "zebbrowser.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QKeySequence>
#include <QLineEdit>
#include <QMetaEnum>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>

namespace
{


QString roleName(QAccessible::Role role)
{
    return QMetaEnum::fromType<QAccessible::Role>().valueToKey(role);
}

// Visits every object a reader reaches under f; what is hidden is left out.
void walk(QAccessibleInterface* f, const std::function<void(QAccessibleInterface*)>& visit)
{
    if (!f || f->state().invisible)
        return;
    visit(f);
    for (int i = 0; i < f->childCount(); ++i)
        walk(f->child(i), visit);
}

// A combo box is named by its entry on Linux; readers name it after the
// label that has it as buddy.
QString nameOf(QAccessibleInterface* f)
{
    if (f->role() != QAccessible::ComboBox)
        return f->text(QAccessible::Name).trimmed();
    const auto labels = f->relations(QAccessible::Label);
    return labels.isEmpty() ? QString() : labels.first().first->text(QAccessible::Name).trimmed();
}

// What a reader could not use: a control without a name, two controls of
// one kind under one name, a check box or radio button without a state.
QStringList faults(QAccessibleInterface* root)
{
    QStringList found;
    QSet<QString> seen;
    walk(root, [&](QAccessibleInterface* f) {
        const QAccessible::State s = f->state();
        const QString name = nameOf(f);
        const QString what = roleName(f->role()) + " \"" + name + "\"";
        const bool acts = f->actionInterface() && !f->actionInterface()->actionNames().isEmpty();
        const auto* w = qobject_cast<QWidget*>(f->object());
        // A view's cells and headers are named by what they hold, blank or not;
        // a proxy's owner is read as its proxy.
        const auto cells = {QAccessible::Cell, QAccessible::TreeItem, QAccessible::ColumnHeader};
        if (std::count(cells.begin(), cells.end(), f->role()) || !(s.focusable || acts) ||
            (w && w->focusProxy()))
            return;
        if (name.isEmpty())
            found << QString("no name: %1 (%2)")
                         .arg(roleName(f->role()), f->object()->metaObject()->className());
        else if (seen.contains(what))
            found << "twice: " + what;
        seen << what;
        const bool checkRole =
            f->role() == QAccessible::CheckBox || f->role() == QAccessible::RadioButton;
        if (checkRole && !s.checkable)
            found << "no checked state: " + what;
    });
    return found;
}

// What a user sees of the window: each object's kind, name, value, and
// whether it is ticked or disabled.
QStringList snapshot(QWidget* window)
{
    QStringList seen;
    walk(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface* f) {
        seen << QString("%1 \"%2\" %3%4%5")
                    .arg(roleName(f->role()), f->text(QAccessible::Name),
                         f->text(QAccessible::Value), f->state().checked ? " ticked" : "",
                         f->state().disabled ? " off" : "");
    });
    return seen;
}

// The first object under window with this name.
QAccessibleInterface* find(QWidget* window, const QString& name)
{
    QAccessibleInterface* found = nullptr;
    walk(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface* f) {
        found = found || f->text(QAccessible::Name) != name ? found : f;
    });
    return found;
}

// The tool dialog and, when blocks are named, a browser window of those.
struct Windows {
    ScratchDir dir;
    Standins standins{dir.path()};
    Tamsel dialog;
    QWidget* browser = nullptr;

    explicit Windows(const QStringList& blocks = {})
    {
        dialog.show();
        if (blocks.isEmpty())
            return;
        ZEBBrowser* tab = dialog.zebBrowser;
        for (auto* box : tab->findChildren<QCheckBox*>())
            box->setChecked(blocks.contains(box->text()));
        tab->findChild<QLineEdit*>("inputFile")->setText(Standins::examplesDir() + "/beam.zeb");
        tab->generate(true);
        for (QWidget* w : QApplication::topLevelWidgets())
            browser = w->objectName() == "browser" ? w : browser;
    }
    ~Windows() { delete browser; }
    QWidget* root() { return browser ? browser : &dialog; }
};

// A click where a box has its tick and a row its check, on a tab or a
// button's face; or else f's first accessible action.
void press(QAccessibleInterface* f, bool click)
{
    if (click) {
        const QRect r = f->rect();
        const QPoint at(r.left() + std::min(r.width(), r.height()) / 2, r.center().y());
        auto* owner = qobject_cast<QWidget*>(f->object()); // else a tab's bar, a row's list
        owner = owner ? owner : qobject_cast<QWidget*>(f->parent()->object());
        QWidget* target = owner->childAt(owner->mapFromGlobal(at));
        target = target ? target : owner;
        QTest::mouseClick(target, Qt::LeftButton, {}, target->mapFromGlobal(at));
    } else {
        f->actionInterface()->doAction(f->actionInterface()->actionNames().first());
    }
    QCoreApplication::processEvents();
}

} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QAccessible::setActive(true); } // as with a screen reader on

    void everyControlNamed_data()
    {
        QTest::addColumn<QString>("window");
        for (const char* tab : {"0", "1", "2", "3"})
            QTest::newRow(tab) << QString("tool dialog, tab ") + tab;
        for (const char* view : {"Text", "Table", "Plot"})
            QTest::newRow(view) << QString("browser, ") + view;
        QTest::newRow("body index") << "body index dialog";
        QTest::newRow("report list") << "report list dialog";
    }

    void everyControlNamed()
    {
        QFETCH(QString, window);
        Windows windows(window.startsWith("browser") ? QStringList{"Eigenvalues"} : QStringList());
        QWidget* root = windows.root();
        std::unique_ptr<QWidget> dialog;
        if (window.startsWith("tool dialog"))
            windows.dialog.tabWidget()->setCurrentIndex(window.right(1).toInt());
        else if (window.startsWith("body"))
            dialog.reset(
                new QCDBIndexDialog(nullptr, "", Standins::examplesDir() + "/vehicle.MASTER"));
        else if (window.startsWith("report"))
            dialog.reset(new QMListDialog("beam_1.rpt\nbeam_2.rpt", nullptr, nullptr, false));
        else // "browser, " and the view
            root->findChild<BlockPage*>()->showView(BlockPage::View(
                QStringList{"Text", "Table", "Plot"}.indexOf(window.section(", ", 1))));
        if (dialog)
            (root = dialog.get())->show();
        QStringList found = faults(QAccessible::queryAccessibleInterface(root));
        found.replaceInStrings(QRegularExpression("^"), window + ": ");
        QVERIFY2(found.isEmpty(), qPrintable(found.join("\n")));
    }

    void actionActsAsAClick_data()
    {
        QTest::addColumn<int>("tab");         // of the tool dialog shown; -1: a browser window
        QTest::addColumn<QString>("control"); // by its accessible name
        QTest::newRow("tool dialog tab") << 0 << "ZEB->ZEB Optimizer";
        QTest::newRow("push button") << 0 << "All";
        QTest::newRow("invariant row") << 0 << "Invariants 3";
        QTest::newRow("radio button") << 1 << "Exclude modes";
        QTest::newRow("check box") << 2 << "Apply Mesh Coarsening Algorithm";
        QTest::newRow("panel tab") << 3 << "Manual";
        QTest::newRow("table switch") << -1 << "Show as table";
        QTest::newRow("plot switch") << -1 << "Show as plot";
    }

    // Each way on windows of their own, then the two compared. A button's
    // Press clicks it a moment later, as the keyboard does.
    void actionActsAsAClick()
    {
        QFETCH(int, tab);
        QFETCH(QString, control);
        std::unique_ptr<Windows> windows;
        QStringList byClick;
        for (const bool click : {true, false}) {
            windows.reset(); // its browser window first
            windows =
                std::make_unique<Windows>(tab < 0 ? QStringList{"Eigenvalues"} : QStringList());
            windows->dialog.tabWidget()->setCurrentIndex(std::max(tab, 0));
            QAccessibleInterface* f = find(windows->root(), control);
            QVERIFY2(f && f->actionInterface(), qPrintable(control));
            press(f, click);
            byClick = click ? snapshot(windows->root()) : byClick;
        }
        QTRY_COMPARE(snapshot(windows->root()), byClick);
    }

    void browserScrollsAtOnce_data()
    {
        QTest::addColumn<bool>("tabClicked"); // on the second page's tab first
        QTest::addColumn<int>("key");
        for (const int key : {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Space, Qt::Key_End})
            QTest::newRow(qPrintable(QKeySequence(key).toString())) << false << key;
        QTest::newRow("Down after a tab click") << true << int(Qt::Key_Down);
    }

    // Keys go to the window, as the window system gives them, to whatever has
    // the keyboard.
    void browserScrollsAtOnce()
    {
        QFETCH(bool, tabClicked);
        QFETCH(int, key);
        Windows windows({"Nodal Coordinates", "Nodal Masses"});
        QVERIFY(QTest::qWaitForWindowActive(windows.browser));
        auto* tabs = windows.browser->findChild<QTabWidget*>();
        if (tabClicked) {
            QTabBar* bar = tabs->tabBar();
            bar->setFocus(); // where a keyboard user may have left it
            QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(1).center());
            QCoreApplication::processEvents(); // the focus follows queued
        }
        auto* view = qobject_cast<QAbstractScrollArea*>(QApplication::focusWidget());
        QVERIFY(view && tabs->widget(tabClicked ? 1 : 0)->isAncestorOf(view));
        QTest::keyClick(windows.browser->windowHandle(), Qt::Key(key));
        QVERIFY(view->verticalScrollBar()->value() > 0);
    }
};

QTEST_MAIN(TestAccessibility)
#include "test_accessibility.moc"
