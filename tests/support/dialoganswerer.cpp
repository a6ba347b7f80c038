#include "dialoganswerer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDeadlineTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

DialogAnswerer::DialogAnswerer()
{
    connect(&timer, &QTimer::timeout, this, &DialogAnswerer::poll);
    timer.start(10);
}

DialogAnswerer::~DialogAnswerer()
{
    // A dialog still open here would block whoever comes next.
    for (QWidget* w = QApplication::activeModalWidget(); w; w = QApplication::activeModalWidget()) {
        if (auto* d = qobject_cast<QDialog*>(w))
            d->done(QDialog::Rejected);
        else
            w->close();
        QCoreApplication::processEvents();
        if (QApplication::activeModalWidget() == w)
            break;
    }
}

DialogAnswerer& DialogAnswerer::pressButton(const QString& text)
{
    answers.append({"message", {text}, {}});
    return *this;
}

DialogAnswerer& DialogAnswerer::chooseFiles(const QStringList& paths)
{
    answers.append({"file", paths, {}});
    return *this;
}

DialogAnswerer& DialogAnswerer::cancelFileDialog(const QString& wanderTo)
{
    answers.append({"file", {}, {}});
    answers.last().values = QStringList{} << QString() << wanderTo;
    return *this;
}

DialogAnswerer& DialogAnswerer::chooseMenuEntry(const QString& text)
{
    answers.append({"menu", {text}, {}});
    return *this;
}

DialogAnswerer& DialogAnswerer::handleDialog(std::function<void(QWidget*)> action)
{
    answers.append({"dialog", {}, std::move(action)});
    return *this;
}

bool DialogAnswerer::waitUntilDone(int timeoutMs)
{
    QDeadlineTimer deadline(timeoutMs);
    while (!answers.isEmpty() && !deadline.hasExpired())
        QTest::qWait(10);
    return answers.isEmpty() && unexpectedDialogs.isEmpty();
}

void DialogAnswerer::poll()
{
    QWidget* w = QApplication::activePopupWidget();
    if (!w)
        w = QApplication::activeModalWidget();
    if (!w || !w->isVisible())
        return;
    if (handled.contains(QPointer<QWidget>(w))) {
        // An answer that did not close its dialog must not leave it hanging.
        if (++stuckPolls > 300) {
            stuckPolls = 0;
            dismiss(w, QString("%1 \"%2\" stayed open after its answer")
                           .arg(w->metaObject()->className(), w->windowTitle()));
        }
        return;
    }
    stuckPolls = 0;
    handled.append(w);
    if (qobject_cast<QMenu*>(w))
        answerMenu(w);
    else if (qobject_cast<QMessageBox*>(w))
        answerMessage(w);
    else if (qobject_cast<QFileDialog*>(w))
        answerFile(w);
    else
        answerOther(w);
}

void DialogAnswerer::dismiss(QWidget* w, const QString& why)
{
    unexpectedDialogs.append(why);
    QPointer<QWidget> guard(w);
    // Acting later lets this poll return first, so nested dialogs are seen.
    QTimer::singleShot(0, this, [guard] {
        if (auto* d = qobject_cast<QDialog*>(guard.data()))
            d->done(QDialog::Rejected);
        else if (guard)
            guard->hide();
    });
}

void DialogAnswerer::answerMessage(QWidget* w)
{
    auto* box = static_cast<QMessageBox*>(w);
    Seen seen;
    seen.kind = "message";
    seen.title = box->windowTitle();
    seen.text = box->text();
    seen.icon = box->icon();
    seen.parent = box->parentWidget();
    seen.parentClass = seen.parent ? seen.parent->metaObject()->className() : "";
    for (QAbstractButton* b : box->buttons())
        seen.buttons.append(b->text());
    if (box->defaultButton())
        seen.defaultButton = box->defaultButton()->text();
    seenDialogs.append(seen);

    if (answers.isEmpty() || answers.first().kind != "message")
        return dismiss(w, "message box \"" + seen.title + "\": " + seen.text);
    const QString wanted = answers.takeFirst().values.value(0);
    QAbstractButton* button = nullptr;
    for (QAbstractButton* b : box->buttons()) {
        if (b->text() == wanted)
            button = b;
    }
    if (!button)
        return dismiss(w, "message box \"" + seen.title + "\" has no button " + wanted);
    QPointer<QAbstractButton> guard(button);
    QTimer::singleShot(0, this, [guard] {
        if (guard)
            guard->click();
    });
}

void DialogAnswerer::answerFile(QWidget* w)
{
    auto* dialog = static_cast<QFileDialog*>(w);
    Seen seen;
    seen.kind = "file";
    seen.title = dialog->windowTitle();
    seen.filters = dialog->nameFilters();
    seen.directory = dialog->directory().absolutePath();
    seen.fileMode = dialog->fileMode();
    seen.parent = dialog->parentWidget();
    seen.parentClass = seen.parent ? seen.parent->metaObject()->className() : "";
    seenDialogs.append(seen);

    if (answers.isEmpty() || answers.first().kind != "file")
        return dismiss(w, "file dialog \"" + seen.title + "\"");
    const QStringList paths = answers.takeFirst().values;
    QPointer<QFileDialog> guard(dialog);
    QTimer::singleShot(0, this, [guard, paths] {
        if (!guard)
            return;
        if (paths.value(0).isEmpty()) { // a cancel
            if (!paths.value(1).isEmpty())
                guard->setDirectory(paths.value(1));
            guard->reject();
            return;
        }
        auto* edit = guard->findChild<QLineEdit*>("fileNameEdit");
        if (!edit)
            return guard->reject();
        if (paths.size() == 1 && QFileInfo(paths.first()).isDir()) {
            edit->setText(paths.first());
        } else if (paths.size() == 1) {
            // As a user does: go to the folder, then type the name.
            guard->setDirectory(QFileInfo(paths.first()).absolutePath());
            edit->setText(QFileInfo(paths.first()).fileName());
        } else {
            guard->setDirectory(QFileInfo(paths.first()).absolutePath());
            QStringList quoted;
            for (const QString& p : paths)
                quoted.append('"' + QFileInfo(p).fileName() + '"');
            edit->setText(quoted.join(' '));
        }
        QMetaObject::invokeMethod(guard.data(), "accept");
    });
}

void DialogAnswerer::answerMenu(QWidget* w)
{
    auto* menu = static_cast<QMenu*>(w);
    Seen seen;
    seen.kind = "menu";
    seen.title = menu->objectName();
    for (QAction* a : menu->actions())
        seen.buttons.append(a->text());
    seenDialogs.append(seen);

    if (answers.isEmpty() || answers.first().kind != "menu")
        return dismiss(w, "menu " + seen.buttons.join(", "));
    const QString wanted = answers.takeFirst().values.value(0);
    QAction* action = nullptr;
    for (QAction* a : menu->actions()) {
        if (a->text() == wanted)
            action = a;
    }
    if (!action)
        return dismiss(w, "menu has no entry " + wanted);
    QPointer<QMenu> guard(menu);
    QTimer::singleShot(0, this, [guard, action] {
        if (!guard)
            return;
        guard->setActiveAction(action);
        QTest::keyClick(guard.data(), Qt::Key_Return);
    });
}

void DialogAnswerer::answerOther(QWidget* w)
{
    Seen seen;
    seen.kind = "dialog";
    seen.title = w->windowTitle();
    seen.parent = w->parentWidget();
    seen.parentClass = seen.parent ? seen.parent->metaObject()->className() : "";
    seenDialogs.append(seen);
    if (answers.isEmpty() || answers.first().kind != "dialog")
        return dismiss(w, "dialog \"" + seen.title + "\" (" + w->metaObject()->className() + ")");
    auto action = answers.takeFirst().action;
    QPointer<QWidget> guard(w);
    QTimer::singleShot(0, this, [guard, action] {
        if (guard)
            action(guard.data());
    });
}
