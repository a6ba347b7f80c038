#include "zebbrowser.h"

#include "app_qmfilelineedit.h"
#include "bodyindexfield.h"
#include "browserwindow.h"
#include "checklist.h"
#include "filerow.h"
#include "messagebox.h"
#include "pictures.h"
#include "qmlistdialog.h"
#include "queuedinputdropper.h"
#include "runcommand.h"
#include "zebreport.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>

#include <cstdio>

namespace
{

const char* const blockNames[ZEBBrowser::blockCount] = {"Version code",
                                                        "Header",
                                                        "Content Summary",
                                                        "Units",
                                                        "Eigenvalues",
                                                        "Generalized Mass",
                                                        "Generalized Stiffness",
                                                        "Generalized Damping",
                                                        "Mode Shape Transformation",
                                                        "Mode Shapes",
                                                        "Stress Modes",
                                                        "Strain Modes",
                                                        "Modal Loads",
                                                        "Preloads",
                                                        "Global Body Properties",
                                                        "Nodal Coordinates",
                                                        "Nodal Masses",
                                                        "Nodal Inertias",
                                                        "Element Faces",
                                                        "Interface Nodes",
                                                        "Invariants 1",
                                                        "Invariants 2",
                                                        "Invariants 3",
                                                        "Invariants 4",
                                                        "Invariants 5",
                                                        "Invariants 7",
                                                        "Invariants 8",
                                                        "Invariants 9"};

// Block numbers of the check boxes (keys 0 to 19) and of the list items
// (keys 20 to 27).
const int boxBlocks[ZEBBrowser::boxCount] = {1,  2,  3,  11, 7, 13, 12, 15, 16, 8,
                                             18, 29, 28, 27, 6, 4,  9,  10, 14, 17};
const int itemBlocks[ZEBBrowser::blockCount - ZEBBrowser::boxCount] = {19, 20, 21, 22,
                                                                       23, 24, 25, 26};

// The groups of check boxes, by their first and last key; the last group
// also holds the list.
struct Group {
    const char* title;
    int firstKey, lastKey;
};
const Group groups[] = {{"ZEB File Info", 0, 3},
                        {"Modal Properties", 4, 13},
                        {"FEM Properties", 14, 18},
                        {"Ondrel Properties", 19, 19}};

const int defaultKeys[] = {0, 1, 14, 3, 19, 4};

QVBoxLayout* boxColumn(const char* name)
{
    auto* column = new QVBoxLayout;
    column->setObjectName(name);
    column->setSpacing(0);
    column->addStretch(1);
    return column;
}

} // namespace

QString ZEBBrowser::blockName(int key)
{
    return QString::fromLatin1(blockNames[key]);
}

int ZEBBrowser::blockNumber(int key)
{
    return key < boxCount ? boxBlocks[key] : itemBlocks[key - boxCount];
}

ZEBBrowser::ZEBBrowser(QWidget* parent, const char* name) : QWidget(parent)
{
    setObjectName(QString::fromLatin1(name));

    QBoxLayout* mainLayout = filerow::tabLayout(this);
    mainLayout->addLayout(createFileRow(), 20);
    mainLayout->addStretch(1);
    mainLayout->addWidget(createBlockGroups(), 20);
    mainLayout->addStretch(1);

    connect(browseBtn, &QPushButton::clicked, this, &ZEBBrowser::proxyBrowse);
    connect(reportBtn, &QPushButton::clicked, this, &ZEBBrowser::proxyReport);
    connect(this, &ZEBBrowser::startGenBrowse, this, &ZEBBrowser::generate);
    connect(this, &ZEBBrowser::startGenReport, this, &ZEBBrowser::generate);
    mainLayout->activate();
    selectDefaultBlocks();
}

// Report list dialogs outlive the tab on purpose: the user closes them.
ZEBBrowser::~ZEBBrowser() = default;

QLayout* ZEBBrowser::createFileRow()
{
    auto* row = new QBoxLayout(QBoxLayout::LeftToRight);
    row->addStretch(2);
    inputFile = filerow::addZebField(row, this, "ZEB or HX DB Input File: ", "inputFile");
    row->addStretch(10);

    bodyIndex = filerow::addIndexField(row, this, inputFile);
    indexLE = bodyIndex->lineEdit();
    indexMenu = bodyIndex->menu();
    row->addStretch(10);

    browseBtn = pictures::pictureButton(this, pictures::browseButton(),
                                        "Start the GUI Browser for the selected components");
    row->addWidget(browseBtn, 10);
    row->addSpacing(10);
    row->addStretch(1);
    reportBtn = pictures::pictureButton(this, pictures::reportButton(),
                                        "Generate a report for the selected components");
    row->addWidget(reportBtn, 10);
    row->addStretch(2);
    return row;
}

QGroupBox* ZEBBrowser::createBlockGroups()
{
    auto* components = new QGroupBox("ZEB Block Components", this);
    components->setFont(filerow::boldFont());
    components->setAlignment(Qt::AlignHCenter);
    auto* row = new QBoxLayout(QBoxLayout::LeftToRight, components);
    row->setContentsMargins(filerow::frameMargins());
    row->addStretch(1);
    for (const char* columnName : {"gbVBx1", "gbVBx2"}) {
        QVBoxLayout* column = boxColumn(columnName);
        const int first = columnName[5] == '1' ? 0 : 2;
        for (int g = first; g < first + 2; ++g) {
            column->addWidget(
                createGroup(components, groups[g].title, groups[g].firstKey, groups[g].lastKey),
                10);
            column->addStretch(1);
        }
        row->addLayout(column, 10);
        row->addStretch(1);
    }
    createInvariantList(components->findChild<QGroupBox*>(groups[3].title));

    auto* buttons = new QVBoxLayout;
    buttons->addStretch(10);
    for (const char* text : {"Clear", "All"}) {
        auto* button = new QPushButton(text, components);
        button->setFixedSize(button->sizeHint());
        buttons->addWidget(button, 4, Qt::AlignHCenter);
        connect(button, &QPushButton::clicked, this,
                text[0] == 'C' ? &ZEBBrowser::clearBlockBoxes : &ZEBBrowser::selectAllBlockBoxes);
    }
    buttons->addStretch(10);
    row->addLayout(buttons, 1);
    row->addStretch(1);
    return components;
}

QGroupBox* ZEBBrowser::createGroup(QWidget* parent, const char* title, int firstKey, int lastKey)
{
    auto* group = new QGroupBox(title, parent);
    group->setObjectName(title);
    // Named by its own title: unnamed, it would take the outer frame's.
    group->setAccessibleName(title);
    group->setAlignment(Qt::AlignHCenter);
    auto* column = new QVBoxLayout(group);
    column->setContentsMargins(filerow::frameMargins());
    column->addStretch(1);
    const bool modal = QByteArray(title) == "Modal Properties";
    for (int key = firstKey; key <= lastKey; ++key) {
        auto* box = new QCheckBox(blockName(key), group);
        const QString tip = QString::asprintf("Block #%d", blockNumber(key));
        box->setToolTip(tip);
        if (modal) {
            std::printf("tip = %s\n", qPrintable(tip));
            std::fflush(stdout);
        }
        blockBoxes[key] = box;
        box->setFixedSize(box->sizeHint());
        column->addWidget(box, 4, Qt::AlignLeft);
    }
    column->addStretch(1);
    return group;
}

// Eight checkable rows in key order; the list sorts on its one column,
// which keeps that order, and every walk over it relies on it.
void ZEBBrowser::createInvariantList(QGroupBox* group)
{
    auto* list = new CheckList(group);
    invariantList = list;
    invariantList->setHeaderLabels({"name"});
    invariantList->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    invariantList->setLineWidth(1);
    invariantList->setToolTip("Blocks #19 - 26");
    invariantList->setAccessibleName("Invariants");
    for (int key = boxCount; key < blockCount; ++key)
        list->addRow(blockName(key));
    invariantList->setSortingEnabled(true);
    invariantList->sortByColumn(0, Qt::AscendingOrder);
    invariantList->resizeColumnToContents(0);
    invariantList->setMinimumHeight(3 * invariantList->sizeHintForRow(0));
    auto* column = static_cast<QVBoxLayout*>(group->layout());
    column->insertWidget(column->count() - 1, invariantList, 10);
}

void ZEBBrowser::selectDefaultBlocks()
{
    for (const int key : defaultKeys)
        blockBoxes[key]->setChecked(true);
}

void ZEBBrowser::setAllBlocks(bool on)
{
    for (QCheckBox* box : blockBoxes)
        box->setChecked(on);
    for (int i = 0; i < invariantList->topLevelItemCount(); ++i)
        invariantList->topLevelItem(i)->setCheckState(0, on ? Qt::Checked : Qt::Unchecked);
}

void ZEBBrowser::clearBlockBoxes()
{
    setAllBlocks(false);
}

void ZEBBrowser::selectAllBlockBoxes()
{
    setAllBlocks(true);
}

bool ZEBBrowser::isSelected(int key) const
{
    if (key < boxCount)
        return blockBoxes[key]->isChecked();
    return invariantList->topLevelItem(key - boxCount)->checkState(0) == Qt::Checked;
}

void ZEBBrowser::selected()
{
    browseBtn->setDefault(true);
}

void ZEBBrowser::proxyBrowse()
{
    emit startGenBrowse(true);
}

void ZEBBrowser::proxyReport()
{
    emit startGenReport(false);
}

void ZEBBrowser::checkCDB()
{
    bodyIndex->checkCDB();
}

void ZEBBrowser::selectIndexFromCDB()
{
    bodyIndex->selectIndexFromCDB();
}

bool ZEBBrowser::eventFilter(QObject* watched, QEvent* event)
{
    return bodyIndex->filterEvent(watched, event) || QWidget::eventFilter(watched, event);
}

QWidget* ZEBBrowser::createBrowserWindow(QTabWidget*& tabs)
{
    auto* window = new BrowserWindow;
    tabs = window->tabs();
    return window;
}

QString ZEBBrowser::stepText(int block, int done, int total)
{
    if (block == 0)
        return "The whole file";
    int key = 0;
    while (key < blockCount - 1 && blockNumber(key) != block)
        ++key;
    return QString("Block %1 of %2: %3").arg(done + 1).arg(total).arg(blockName(key));
}

QList<int> ZEBBrowser::selectedKeys() const
{
    QList<int> keys;
    for (int key = 0; key < blockCount; ++key)
        if (isSelected(key))
            keys.append(key);
    return keys;
}

void ZEBBrowser::generate(bool browse)
{
    // A click that reaches here while a run waits must not start a second.
    if (QueuedInputDropper::DuringRun::active())
        return;
    if (!bodyIndex->checkIndex())
        return;
    ZEBReport report(inputFile->text(), indexLE->text());
    if (!report.valid || report.commandRefused())
        return;
    // Reports of a deleted directory would land in "/".
    if (const QString problem = workingDirectoryProblem(); !problem.isEmpty()) {
        MessageBox::warn("Unable To Run", problem + "\nNothing was run.");
        return;
    }
    const QList<int> keys = selectedKeys();
    if (browse && keys.isEmpty()) {
        MessageBox::warning(nullptr, "No blocks selected",
                            "Please select at least one ZEB block to browse.", "OK", "", "", 0, 0);
        return;
    }
    if (browse)
        browseBlocks(report, keys);
    else
        listReports(report, keys);
}

void ZEBBrowser::browseBlocks(ZEBReport& report, const QList<int>& keys)
{
    QTabWidget* tabs = nullptr;
    QWidget* window = createBrowserWindow(tabs);
    {
        const QueuedInputDropper::DuringRun job; // busy from the first block to the last
        for (int i = 0; i < keys.size(); ++i) {
            const int block = blockNumber(keys[i]);
            QueuedInputDropper::DuringRun::showStep(stepText(block, i, int(keys.size())), i,
                                                    int(keys.size()));
            auto* page = new QWidget(tabs);
            page->setAccessibleName(blockName(keys[i])); // names its view too
            tabs->addTab(page, blockName(keys[i]));
            report.showBlock(page, block);
        }
    }
    window->setWindowTitle("Ondrel Tamsel ZEB Browser");
    window->setWindowIcon(pictures::windowIcon());
    window->setWindowIconText("Browser");
    window->resize(600, 300);
    window->show();
}

void ZEBBrowser::listReports(ZEBReport& report, const QList<int>& keys)
{
    char blockSelection[ZEBReport::selectionSize] = {};
    for (const int key : keys)
        blockSelection[blockNumber(key)] = 1;
    blockSelection[0] = keys.size() == blockCount ? 1 : 0;
    QString names;
    {
        const QueuedInputDropper::DuringRun job;
        report.starting = [](unsigned int block, int done, int total) {
            QueuedInputDropper::DuringRun::showStep(stepText(int(block), done, total), done, total);
        };
        names = report.generateReports(blockSelection);
    }
    reportList = new QMListDialog(names, nullptr, nullptr, false);
    reportList->show();
}
