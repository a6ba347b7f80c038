#pragma once

#include <QWidget>

class QTabWidget;

// The window that shows the pages of one browse: a tab for each block and a
// "Close" button. It belongs to nobody and deletes itself when closed.
// Assistive technology sees it as a window, not as a filler. The page in
// view has the keyboard, so that the keys scroll it at once.
class BrowserWindow : public QWidget
{
    Q_OBJECT

public:
    BrowserWindow();

    QTabWidget* tabs() const { return tabWidget; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void focusPage();

    QTabWidget* tabWidget;
};
