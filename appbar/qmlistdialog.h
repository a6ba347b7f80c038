#pragma once

#include <QDialog>

// Shows a short text, usually the names of files just written, under the
// heading "Output Report Files Generated: " with a "Close" button. The text
// is fixed at construction; the dialog works modal (exec) or modeless (show).
class QMListDialog : public QDialog
{
    Q_OBJECT

public:
    // name is ignored: the object name is always "ListDialog".
    QMListDialog(const QString& text, QWidget* parent = nullptr, const char* name = nullptr,
                 bool modal = false, Qt::WindowFlags f = {});
    ~QMListDialog() override;
};
