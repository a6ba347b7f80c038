#pragma once

#include <QFont>
#include <QMargins>
#include <QString>

class BodyIndexField;
class QBoxLayout;
class QLabel;
class QLineEdit;
class QMFileLineEdit;
class QWidget;

// The pieces of a tab's file row that every tab builds alike.
namespace filerow
{

// Room between a frame and what it holds: flush against the frame, text and
// fields look clipped at the tab's smallest size, where the stretches are gone.
constexpr int frameRoom = 6;
inline QMargins frameMargins()
{
    return QMargins(frameRoom, frameRoom, frameRoom, frameRoom);
}

// A tab's main layout, top to bottom, starting with a stretch of 1.
QBoxLayout* tabLayout(QWidget* tab);

// The default font's family and size, bold, not italic.
QFont boldFont();

// A centred bold label fixed at its size.
QLabel* label(const QString& text, QWidget* parent);

// Names control for screen readers after the label beside it: its text
// without the closing colon, its tool tip as the description, and the label
// as its buddy, through which Linux readers name a combo box.
void nameAfter(QWidget* control, QLabel* label);

// The label and a file field (200 by 25) behind it, added to the row with
// stretch 10 each; the label names the field for screen readers.
QMFileLineEdit* addFileField(QBoxLayout* row, QWidget* tab, const QString& label, const char* name);

// The same with the ZEB and HX DB filters.
QMFileLineEdit* addZebField(QBoxLayout* row, QWidget* tab, const QString& label, const char* name);

// The label "Index: " and the body index field of fileField, added to the row
// with stretch 10 each; a change of the file field checks the index.
BodyIndexField* addIndexField(QBoxLayout* row, QWidget* tab, QLineEdit* fileField);

} // namespace filerow
