#include "dialoganswerer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>

namespace
{

void reject(QWidget* w)
{
    if (auto* d = qobject_cast<QDialog*>(w))
        d->done(QDialog::Rejected);
    else if (w)
        w->hide();
}

void choose(QFileDialog* dialog, const QStringList& paths)
{
    auto* edit = dialog->findChild<QLineEdit*>("fileNameEdit");
    if (paths.value(0).isEmpty() || !edit) { // a cancel
        if (!paths.value(1).isEmpty())
            dialog->setDirectory(paths.value(1));
        return dialog->reject();
    }
    const QFileInfo first(paths[0]);
    QStringList names;
    for (const QString& p : paths)
        names.append('"' + QFileInfo(p).fileName() + '"');
    // As a user does: go to the folder, then type the names; a folder whole.
    if (!first.isDir())
        dialog->setDirectory(first.absolutePath());
    edit->setText(paths.size() > 1 ? names.join(' ') : first.isDir() ? paths[0] : first.fileName());
    QMetaObject::invokeMethod(dialog, "accept");
}

} // namespace

DialogAnswerer::~DialogAnswerer()
{
    // A dialog still open here would block whoever comes next.
    for (QWidget* w = QApplication::activeModalWidget(); w; w = QApplication::activeModalWidget()) {
        reject(w);
        QCoreApplication::processEvents();
        if (QApplication::activeModalWidget() == w)
            break;
    }
}

bool DialogAnswerer::waitUntilDone(int timeoutMs)
{
    poll(); // a popup open now counts, even one that would close unseen
    return QTest::qWaitFor([this] { return answers.isEmpty() && !acting; }, timeoutMs) &&
           unexpectedDialogs.isEmpty();
}

void DialogAnswerer::poll()
{
    QWidget* const popup = QApplication::activePopupWidget();
    QWidget* w = popup ? popup : QApplication::activeModalWidget();
    if (!w || !w->isVisible())
        return;
    if (handled.contains(QPointer<QWidget>(w))) {
        // An answer that did not close its dialog must not leave it hanging.
        if (++stuckPolls > 300) {
            stuckPolls = 0;
            dismiss(w, w->windowTitle() + " stayed open after its answer");
        }
        return;
    }
    stuckPolls = 0;
    handled.append(w);
    const Seen seen = record(w);
    const QString what =
        QString("%1 \"%2\" %3 [%4]")
            .arg(w->metaObject()->className(), seen.title, seen.text, seen.buttons.join(", "));
    if (answers.isEmpty() || answers.first().kind != seen.kind)
        return dismiss(w, what);
    const Answer next = answers.takeFirst();
    const int entry = seen.buttons.indexOf(next.values.value(0));
    if ((seen.kind == "message" || seen.kind == "menu") && entry < 0)
        return dismiss(w, what + " has no " + next.values.value(0));
    // Acting later lets this poll return first, so nested dialogs are seen.
    ++acting;
    QTimer::singleShot(0, this, [this, w = QPointer<QWidget>(w), next, entry] {
        --acting;
        if (!w)
            return;
        if (auto* menu = qobject_cast<QMenu*>(w)) {
            menu->setActiveAction(menu->actions().value(entry));
            QTest::keyClick(menu, Qt::Key_Return);
        } else if (auto* box = qobject_cast<QMessageBox*>(w)) {
            box->buttons().value(entry)->click();
        } else if (auto* dialog = qobject_cast<QFileDialog*>(w)) {
            choose(dialog, next.values);
        } else {
            next.action(w);
        }
    });
}

DialogAnswerer::Seen DialogAnswerer::record(QWidget* w)
{
    Seen s;
    s.kind = "dialog";
    s.title = w->windowTitle();
    s.parent = w->parentWidget();
    s.parentClass = s.parent ? s.parent->metaObject()->className() : "";
    if (auto* menu = qobject_cast<QMenu*>(w)) {
        s.kind = "menu";
        s.title = menu->objectName();
        for (QAction* a : menu->actions()) // less the shortcut behind a tab
            s.buttons.append(a->text().section('\t', 0, 0));
    } else if (auto* box = qobject_cast<QMessageBox*>(w)) {
        s.kind = "message";
        s.text = box->text();
        s.icon = box->icon();
        for (QAbstractButton* b : box->buttons())
            s.buttons.append(b->text());
        s.defaultButton = box->defaultButton() ? box->defaultButton()->text() : "";
        s.escapeButton = box->escapeButton() ? box->escapeButton()->text() : "";
    } else if (auto* dialog = qobject_cast<QFileDialog*>(w)) {
        s.kind = "file";
        s.filters = dialog->nameFilters();
        s.directory = dialog->directory().absolutePath();
        s.fileMode = dialog->fileMode();
    }
    seenDialogs.append(s);
    return s;
}

void DialogAnswerer::dismiss(QWidget* w, const QString& why)
{
    unexpectedDialogs.append(why);
    QTimer::singleShot(0, this, [guard = QPointer<QWidget>(w)] { reject(guard); });
}

QStringList DialogAnswerer::boxes() const
{
    QStringList result;
    for (const auto& s : seenDialogs)
        if (s.kind == "message")
            result.append(
                QString("%1: %2 [%3] %4/%5")
                    .arg(s.title, s.text, s.buttons.join('|'), s.defaultButton, s.escapeButton) +
                (s.parent ? " in " + s.parentClass : ""));
    return result;
}
