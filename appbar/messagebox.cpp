#include "messagebox.h"

#include <QPushButton>

int MessageBox::show(QMessageBox::Icon icon, QWidget* parent, const QString& caption,
                     const QString& text, const QStringList& buttons, int defaultButton,
                     int escapeButton)
{
    QMessageBox box(icon, caption, text, QMessageBox::NoButton, parent);
    QList<QPushButton*> pushButtons;
    for (const QString& b : buttons) {
        if (!b.isEmpty())
            pushButtons.append(box.addButton(b, QMessageBox::ActionRole));
    }
    if (defaultButton >= 0 && defaultButton < pushButtons.size())
        box.setDefaultButton(pushButtons.at(defaultButton));
    if (escapeButton >= 0 && escapeButton < pushButtons.size())
        box.setEscapeButton(pushButtons.at(escapeButton));
    box.exec();
    // A box closed some other way (its close control) counts as the escape.
    const int clicked = pushButtons.indexOf(static_cast<QPushButton*>(box.clickedButton()));
    return clicked >= 0 ? clicked : escapeButton;
}

int MessageBox::information(QWidget* parent, const QString& caption, const QString& text,
                            const QString& b0, const QString& b1, const QString& b2,
                            int defaultButton, int escapeButton)
{
    return show(QMessageBox::Information, parent, caption, text, {b0, b1, b2}, defaultButton,
                escapeButton);
}

int MessageBox::warning(QWidget* parent, const QString& caption, const QString& text,
                        const QString& b0, const QString& b1, const QString& b2, int defaultButton,
                        int escapeButton)
{
    return show(QMessageBox::Warning, parent, caption, text, {b0, b1, b2}, defaultButton,
                escapeButton);
}

int MessageBox::critical(QWidget* parent, const QString& caption, const QString& text,
                         const QString& b0, const QString& b1, const QString& b2, int defaultButton,
                         int escapeButton)
{
    return show(QMessageBox::Critical, parent, caption, text, {b0, b1, b2}, defaultButton,
                escapeButton);
}

void MessageBox::warn(const QString& caption, const QString& text)
{
    warning(nullptr, caption, text, "OK", QString(), QString(), 0, 0);
}
