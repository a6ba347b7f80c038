#pragma once

// Works the write options panel through its widgets, as a user would, sums
// up the message boxes a test saw, and looks at how widgets are laid out.
#include "dialoganswerer.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QStackedWidget>
#include <QTabBar>

// The options entry's name, and its value for a panel left at its defaults.
inline const QString entry = "OKT_ZEBWRITE_OPTIONS=";
inline const QString defaults = " fast_invar      strip_face ";
inline const QString noSketch = "Missing Sketch File: You must supply a sketch filename. [OK]";

// The widget whose object name is key, or whose text or tool tip starts with it.
template <class W = QWidget> W* widget(QWidget* parent, const QString& key)
{
    for (W* w : parent->findChildren<W*>()) {
        const auto* label = qobject_cast<QLabel*>(w);
        const auto* button = qobject_cast<QAbstractButton*>(w);
        if (w->objectName() == key || (!key.isEmpty() && w->toolTip().startsWith(key)) ||
            (label && label->text().startsWith(key)) || (button && button->text().startsWith(key)))
            return w;
    }
    qFatal("no widget \"%s\"", qPrintable(key));
}

// Settings separated by ";": "unitsCB=Full Set", "meshResSL=5",
// "Nodes=1 3:10" (by tool tip), "sketchCombo=a.dat", "tab=1", or the start of
// a check box text to click it: "Apply", "Rigid", "Remove Int", ...
inline void apply(QWidget* panel, const QString& settings)
{
    for (const QString& setting : settings.split(';', Qt::SkipEmptyParts)) {
        const QString key = setting.section('=', 0, 0);
        const QString value = setting.section('=', 1);
        if (key.endsWith("CB"))
            widget<QComboBox>(panel, key)->setCurrentText(value);
        else if (key.endsWith("SL"))
            widget<QSlider>(panel, key)->setValue(value.toInt());
        else if (key == "tab")
            panel->findChild<QTabBar*>()->setCurrentIndex(value.toInt());
        else if (setting.contains('='))
            widget<QLineEdit>(panel, key)->setText(value);
        else
            widget<QAbstractButton>(panel, key)->click();
    }
}

// "caption: text [buttons]" of each message box seen.
inline QStringList messages(const DialogAnswerer& answers)
{
    QStringList result;
    for (const auto& seen : answers.seen())
        if (seen.kind == "message")
            result.append(seen.title + ": " + seen.text + " [" + seen.buttons.join('|') + "]");
    return result;
}

// The visible widgets under top closer than 3 pixels to the frame or page
// that holds them, but for those placed flush by design: in a stack, or held
// by one of the named widgets.
inline QStringList touchingTheirFrame(QWidget* top, const QStringList& flushIn)
{
    QStringList found;
    for (QWidget* w : top->findChildren<QWidget*>()) {
        const QWidget* holder = w->parentWidget();
        if (w->isVisible() && !qobject_cast<const QStackedWidget*>(holder) &&
            !flushIn.contains(holder->objectName()) &&
            !holder->contentsRect().marginsRemoved({3, 3, 3, 3}).contains(w->geometry()))
            found.append(w->metaObject()->className() + (" " + w->property("text").toString()));
    }
    return found;
}
