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

// The browser tab's buttons: a browser window under a magnifier, and a
// pencil on a sheet.
QPixmap browseButton();
QPixmap reportButton();

// The 24 by 24 window icon of the tool dialog and the browser windows.
QPixmap windowIcon();

// A start button of a translator tab: the run picture, 40 by 40.
QPushButton* runPushButton(QWidget* parent, const QString& toolTip);

// A picture button without text, 40 by 40.
QPushButton* pictureButton(QWidget* parent, const QPixmap& picture, const QString& toolTip);

} // namespace pictures
