#pragma once

#include <QMessageBox>
#include <QString>

class QWidget;

// Message boxes in the form the forms use throughout: button texts in
// order, the default and escape buttons by number (-1: none), and the number
// of the pressed button as the answer.
class MessageBox
{
public:
    static int information(QWidget* parent, const QString& caption, const QString& text,
                           const QString& b0 = "OK", const QString& b1 = QString(),
                           const QString& b2 = QString(), int defaultButton = 0,
                           int escapeButton = -1);
    static int warning(QWidget* parent, const QString& caption, const QString& text,
                       const QString& b0 = "OK", const QString& b1 = QString(),
                       const QString& b2 = QString(), int defaultButton = 0, int escapeButton = -1);
    static int critical(QWidget* parent, const QString& caption, const QString& text,
                        const QString& b0 = "OK", const QString& b1 = QString(),
                        const QString& b2 = QString(), int defaultButton = 0,
                        int escapeButton = -1);

    // The one-button warning of a failed check: "OK", default and escape.
    static void warn(const QString& caption, const QString& text);

private:
    static int show(QMessageBox::Icon icon, QWidget* parent, const QString& caption,
                    const QString& text, const QStringList& buttons, int defaultButton,
                    int escapeButton);
};
