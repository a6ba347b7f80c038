#pragma once

#include "blockplot.h"

#include <QWidget>

class BlockTableView;
class BlockView;
class QAbstractButton;
class QButtonGroup;
class QPushButton;
class QStackedWidget;

// A block's page with a switch between its text (first, and as it always
// was), a table of its columns and a plot of them. The table and the plot
// are made the first time they are shown; each page keeps its own choice.
class BlockPage : public QWidget
{
    Q_OBJECT

public:
    enum View { Text, Table, Plot };

    // Takes the page's text view; its text must stay as it is.
    BlockPage(BlockView* textView, const BlockLayout& layout, const BlockPlot::Setup& setup,
              QWidget* parent = nullptr);

    // Whether a block of this layout gets a table and a plot: a layout of
    // two columns or more. Error, empty and one-column pages are text.
    static bool offersViews(const BlockLayout* layout);

    View currentView() const;
    void showView(View view);
    QAbstractButton* switchButton(View view) const;
    BlockView* textView() const { return text; }
    // Null until first shown.
    BlockTableView* tableView() const { return table; }
    BlockPlot* plot() const { return plotView; }

private:
    QWidget* makeSwitch();

    BlockView* text;
    BlockLayout layout;
    BlockPlot::Setup setup;
    QButtonGroup* buttons;
    QStackedWidget* stack;
    QPushButton* exportButton = nullptr;
    BlockTableView* table = nullptr;
    BlockPlot* plotView = nullptr;
};
