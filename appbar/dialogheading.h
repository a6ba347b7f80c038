#pragma once

class QBoxLayout;
class QLabel;
class QString;
class QWidget;

// The heading of the small list dialogs: bold, 12 points, in the default
// font's family, centred and fixed at its size, with a stretch under it.
QLabel* addDialogHeading(QBoxLayout* layout, const QString& text, QWidget* dialog);
