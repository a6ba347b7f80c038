#include "blockpage.h"

#include "blocktableview.h"
#include "blockview.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace
{

struct SwitchEntry {
    const char* text;
    const char* accessibleName;
    const char* toolTip;
};
const SwitchEntry switchEntries[] = {
    {"&Text", "Show as text", "The report as it was written (Alt+T)"},
    {"T&able", "Show as table", "The columns as a table: sort, copy, export (Alt+A)"},
    {"&Plot", "Show as plot", "The columns as a chart: wheel and band zoom (Alt+P)"},
};

} // namespace

BlockPage::BlockPage(BlockView* textView, const BlockLayout& blockLayout,
                     const BlockPlot::Setup& plotSetup, QWidget* parent)
    : QWidget(parent), text(textView), layout(blockLayout), setup(plotSetup),
      buttons(new QButtonGroup(this)), stack(new QStackedWidget)
{
    setObjectName("block page");
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
    box->setSpacing(2);
    box->addWidget(makeSwitch());
    box->addWidget(stack, 1);
    stack->addWidget(text);
    showView(Text);
}

bool BlockPage::offersViews(const BlockLayout* layout)
{
    return layout && layout->columnCount >= 2;
}

QWidget* BlockPage::makeSwitch()
{
    auto* bar = new QWidget;
    bar->setObjectName("view switch");
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (int view = Text; view <= Plot; ++view) {
        auto* button = new QToolButton;
        const SwitchEntry& entry = switchEntries[view];
        button->setText(entry.text);
        button->setAccessibleName(entry.accessibleName);
        button->setToolTip(entry.toolTip);
        button->setCheckable(true);
        button->setFocusPolicy(Qt::StrongFocus);
        buttons->addButton(button, view); // an exclusive group: arrow keys move along
        row->addWidget(button);
    }
    connect(buttons, &QButtonGroup::idClicked, this, [this](int id) { showView(View(id)); });
    row->addStretch(1);
    exportButton = new QPushButton("Export CSV…");
    exportButton->setObjectName("export csv");
    row->addWidget(exportButton);
    return bar;
}

BlockPage::View BlockPage::currentView() const
{
    return View(buttons->checkedId());
}

void BlockPage::showView(View view)
{
    if (view == Table && !table) {
        table = new BlockTableView(text->blockText(), layout);
        table->setFont(text->font());
        stack->addWidget(table);
        connect(exportButton, &QPushButton::clicked, table, &BlockTableView::exportCsvAs);
    }
    if (view == Plot && !plotView) {
        plotView = new BlockPlot(text->blockText(), layout, setup);
        stack->addWidget(plotView);
    }
    QWidget* shown[] = {text, table, plotView};
    stack->setCurrentWidget(shown[view]);
    buttons->button(view)->setChecked(true);
    exportButton->setVisible(view == Table);
}

QAbstractButton* BlockPage::switchButton(View view) const
{
    return buttons->button(view);
}
