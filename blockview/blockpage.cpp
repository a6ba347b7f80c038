#include "blockpage.h"

#include "blocktableview.h"
#include "blockview.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
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
    {"&Plot", "Show as plot", "The columns as a chart: wheel, band and keys zoom (Alt+P)"},
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
    // The switch comes before the view it switches.
    setTabOrder(buttons->button(Plot), text);
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
    row->setSpacing(12);
    for (int view = Text; view <= Plot; ++view) {
        // One choice of three: read as radio buttons, arrow keys move along.
        auto* button = new QRadioButton;
        const SwitchEntry& entry = switchEntries[view];
        button->setText(entry.text);
        button->setAccessibleName(entry.accessibleName);
        button->setToolTip(entry.toolTip);
        button->setFocusPolicy(Qt::StrongFocus);
        buttons->addButton(button, view);
        row->addWidget(button);
    }
    // A click, a key and an assistive tool's Toggle all tick a button.
    connect(buttons, &QButtonGroup::idToggled, this, [this](int id, bool on) {
        if (on)
            showView(View(id));
    });
    // Rows that join unrelated quantities get a table and no plot.
    buttons->button(Plot)->setVisible(setup.kind != BlockPlot::Setup::None);
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
    if (view == Plot && setup.kind == BlockPlot::Setup::None)
        return;
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
