#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTest>
#include <QTimer>

#include <functional>

class QWidget;

// Answers the modal dialogs and popup menus a test expects, in order, and
// closes any other so that no test ever hangs on one. What it saw is kept
// for the test to look at.
class DialogAnswerer : public QObject
{
    Q_OBJECT

public:
    using Action = std::function<void(QWidget*)>;
    struct Seen {
        QString kind;              // "message", "file", "menu" or "dialog"
        QString title;             // window title; a menu's object name
        QString text;              // message text
        QStringList buttons;       // message box buttons or menu entries, in order
        QString defaultButton;     // text of the default button
        QString escapeButton;      // text of the escape button, "" for none
        int icon = 0;              // QMessageBox::Icon
        QStringList filters;       // file dialog name filters
        QString directory;         // file dialog directory when it opened
        int fileMode = -1;         // QFileDialog::FileMode
        QWidget* parent = nullptr; // may be gone by the time the test looks
        QString parentClass;       // class name of the parent, "" for none
    };

    DialogAnswerer()
    {
        connect(&timer, &QTimer::timeout, this, &DialogAnswerer::poll);
        timer.start(10);
    }
    ~DialogAnswerer() override;

    // The next message box: press the button with this text.
    DialogAnswerer& pressButton(const QString& text) { return expect("message", {text}); }
    // The next file dialog: choose these paths.
    DialogAnswerer& chooseFiles(const QStringList& paths) { return expect("file", paths); }
    DialogAnswerer& chooseFile(const QString& path) { return chooseFiles({path}); }
    // The next file dialog: cancel, after going to this folder if given.
    DialogAnswerer& cancelFileDialog(const QString& to = "") { return expect("file", {"", to}); }
    // The next popup menu: trigger the entry with this text (less its shortcut).
    DialogAnswerer& chooseMenuEntry(const QString& text) { return expect("menu", {text}); }
    // The next other modal dialog: let the test act on it.
    DialogAnswerer& handleDialog(Action action) { return expect("dialog", {}, action); }

    const QList<Seen>& seen() const { return seenDialogs; }
    // "caption: text [buttons] default/escape" of each message box seen, with
    // " in CLASS" behind when it has a parent.
    QStringList boxes() const;
    QStringList unexpected() const { return unexpectedDialogs; }

    // Waits (bounded) until every answer is used; true when they were and no
    // unexpected dialog came.
    bool waitUntilDone(int timeoutMs = 5000);

private:
    struct Answer {
        QString kind;
        QStringList values;
        Action action;
    };

    DialogAnswerer& expect(const QString& kind, const QStringList& values, Action action = {})
    {
        answers.append({kind, values, std::move(action)});
        return *this;
    }
    void poll();
    Seen record(QWidget* w);
    void dismiss(QWidget* w, const QString& why);

    QTimer timer;
    QList<Answer> answers;
    QList<Seen> seenDialogs;
    QStringList unexpectedDialogs;
    QList<QPointer<QWidget>> handled;
    int stuckPolls = 0;
    int acting = 0; // answers taken but not yet acted on
};

// Fails the current test function (and returns from it) unless every
// expected dialog came and no other did.
#define VERIFY_DIALOGS(answerer)                                                                   \
    do {                                                                                           \
        const bool dialogsOk_ = (answerer).waitUntilDone();                                        \
        QVERIFY2(dialogsOk_, qPrintable("dialogs: unanswered or unexpected: " +                    \
                                        (answerer).unexpected().join(" | ")));                     \
    } while (0)
