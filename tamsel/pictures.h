#pragma once

#include <QPixmap>

class QPushButton;
class QWidget;

// Button pictures shared by the translator tabs.
namespace pictures
{

// The start button of the tabs that run a translator: a page going
// through a mill and coming out as a window page.
QPixmap runButton();

// The button that saves the write options to a script file.
QPixmap scriptButton();

// A start button of a translator tab: the run picture, 40 by 40.
QPushButton* runPushButton(QWidget* parent, const QString& toolTip);

} // namespace pictures
