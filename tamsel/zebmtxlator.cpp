#include "zebmtxlator.h"

#include "pictures.h"

#include "app_qmfilelineedit.h"
#include "bodyindexfield.h"
#include "filerow.h"
#include "messagebox.h"
#include "runcommand.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include <cstdlib>

namespace
{

const char* const nodeTip = "Separate IDs with space or use list input. Example: 1 3:10 11 15";
const char* const modeTip =
    "Separate mode numbers with space or use list input. Example: 1 3:10 11 15";

QLabel* fixedLabel(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setFixedSize(label->sizeHint());
    return label;
}

// The first entry is the default and the one the translator assumes.
QComboBox* unitBox(QWidget* parent, const char* name, const QStringList& entries)
{
    auto* box = new QComboBox(parent);
    box->setObjectName(name);
    for (int i = 0; i < entries.size(); ++i)
        box->insertItem(i, entries.at(i));
    box->setFixedSize(box->sizeHint());
    return box;
}

// The unit's label in row, its combo box under it; the label names the box.
void addUnitRow(QGridLayout* grid, const char* unit, QComboBox* box, int row, int column)
{
    QLabel* title = fixedLabel(unit, box->parentWidget());
    filerow::nameAfter(box, title);
    grid->addWidget(title, row, column, Qt::AlignLeft);
    grid->addWidget(box, row + 1, column);
}

QString unitFlag(const QComboBox* box, const char* flag)
{
    if (box->currentIndex() == 0)
        return QString();
    return QString(" ") + flag + " " + box->currentText();
}

QString listFlags(const QLineEdit* list, const QRadioButton* include, const char* kind)
{
    if (list->text().isEmpty())
        return QString();
    return QString(include->isChecked() ? " +" : " -") + kind + " " + list->text();
}

// Only the fourth character from the end is looked at; a name too short to
// have one gains the suffix as well.
QString finalOutputName(const QString& typed)
{
    if (typed.size() >= 4 && typed.at(typed.size() - 4) == '.')
        return typed;
    return typed + ".mtx";
}

void setGridStretches(QGridLayout* grid, const QList<int>& rows, const QList<int>& columns)
{
    for (int r = 0; r < rows.size(); ++r)
        grid->setRowStretch(r, rows.at(r));
    for (int c = 0; c < columns.size(); ++c)
        grid->setColumnStretch(c, columns.at(c));
}

QGridLayout* boxGrid(QGroupBox* box, const QList<int>& rows, const QList<int>& columns)
{
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(filerow::frameMargins());
    grid->setSpacing(-1);
    setGridStretches(grid, rows, columns);
    return grid;
}

} // namespace

ZEBMTXLator::ZEBMTXLator(QWidget* parent, const char* name) : QWidget(parent)
{
    setObjectName(QString::fromLatin1(name));
    const QFont bold = filerow::boldFont();

    QBoxLayout* mainLayout = filerow::tabLayout(this);
    mainLayout->addLayout(createFileRow(), 4);
    mainLayout->addStretch(1);

    auto* groupsHBx = new QBoxLayout(QBoxLayout::LeftToRight);
    groupsHBx->setSpacing(0);
    groupsHBx->setObjectName("groupsHBx");
    groupsHBx->addStretch(1);
    groupsHBx->addWidget(createUnitsBox(bold), 10);
    groupsHBx->addStretch(1);
    groupsHBx->addWidget(createNodesModesBox(bold), 60);
    groupsHBx->addStretch(1);
    mainLayout->addLayout(groupsHBx, 20);
    mainLayout->addStretch(1);

    fastInvarCB = new QCheckBox("Fast Invar", this);
    fastInvarCB->setFixedSize(fastInvarCB->sizeHint());
    fastInvarCB->setChecked(true);
    fastInvarCB->setToolTip("Diable to compute full set of invariants for \"Full Coupling\".");
    mainLayout->addWidget(fastInvarCB, 1, Qt::AlignCenter);
    mainLayout->addStretch(1);

    connect(translatePB, &QPushButton::clicked, this, &ZEBMTXLator::translate);
    mainLayout->activate();
}

QBoxLayout* ZEBMTXLator::createFileRow()
{
    auto* row = new QBoxLayout(QBoxLayout::LeftToRight);
    row->addStretch(1);
    inputCombo = filerow::addZebField(row, this, "ZEB or HX DB Input File:", "inputCombo");
    row->addStretch(1);

    bodyIndex = filerow::addIndexField(row, this, inputCombo);
    indexLE = bodyIndex->lineEdit();
    indexMenu = bodyIndex->menu();
    row->addStretch(10);

    outputLE = filerow::addFileField(row, this, "Matrix Output File:", "outputLE");
    outputLE->filter = "All Matrix files (*.mtx)";
    row->addStretch(1);

    translatePB = pictures::runPushButton(this, "Begin Translation");
    row->addWidget(translatePB, 2, Qt::AlignCenter);
    row->addStretch(1);
    return row;
}

QGroupBox* ZEBMTXLator::createUnitsBox(const QFont& bold)
{
    auto* box = new QGroupBox("Ondrel Model Units", this);
    box->setObjectName("unitsGBox");
    box->setFont(bold);
    box->setAlignment(Qt::AlignHCenter);
    box->setToolTip("Specify units to match those in Ondrel model, which may differ from ZEB.");
    QGridLayout* grid = boxGrid(box, {2, 10, 10, 2, 10, 10, 2}, {1, 10, 3, 10, 4});

    lengthCB = unitBox(box, "lengthCB",
                       {"METER", "MILLIMETER", "INCH", "FOOT", "MILE", "CENTIMETER", "KILOMETER"});
    addUnitRow(grid, "Length", lengthCB, 1, 1);
    timeCB = unitBox(box, "timeCB", {"SECOND", "MILLISECOND", "MINUTE", "HOUR"});
    addUnitRow(grid, "Time", timeCB, 4, 1);
    massCB = unitBox(box, "massCB",
                     {"KILOGRAM", "OUNCE_MASS", "POUND_MASS", "SLUG", "SLINCH", "KPOUND_MASS",
                      "GRAM", "MEGAGRAM"});
    addUnitRow(grid, "Mass", massCB, 1, 3);
    forceCB = unitBox(box, "forceCB",
                      {"NEWTON", "OUNCE_FORCE", "POUND_FORCE", "KPOUND_FORCE", "DYNE",
                       "KILOGRAM_FORCE", "KNEWTON", "MILLINEWTON"});
    addUnitRow(grid, "Force", forceCB, 4, 3);
    return box;
}

// A list's label in row, its line edit under it; both carry the tool tip.
QLineEdit* ZEBMTXLator::addListRow(QGroupBox* box, QGridLayout* grid, int row, const char* label,
                                   const char* name, const char* tip)
{
    QLabel* title = fixedLabel(label, box);
    title->setToolTip(tip);
    grid->addWidget(title, row, 1);
    auto* edit = new QLineEdit(box);
    filerow::nameAfter(edit, title); // else it is read by the frame's title
    edit->setObjectName(name);
    edit->setFixedSize(200, 25);
    edit->setToolTip(tip);
    grid->addWidget(edit, row + 1, 1, 1, 3);
    return edit;
}

QGroupBox* ZEBMTXLator::createNodesModesBox(const QFont& bold)
{
    auto* box = new QGroupBox("Nodes/Modes", this);
    box->setFont(bold);
    box->setAlignment(Qt::AlignHCenter);
    QGridLayout* grid = boxGrid(box, {1, 4, 4, 1, 4, 4, 1}, {1, 6, 6, 6, 1, 4, 1});

    nodeIDs = addListRow(box, grid, 1, "Node ID List", "nodeIDs", nodeTip);
    nodesIncludeRB = addIncludeExclude(box, 1, nodeIDs, "nodes");
    modeList = addListRow(box, grid, 4, "Mode Number List", "modeList", modeTip);
    modesIncludeRB = addIncludeExclude(box, 4, modeList, "modes");
    return box;
}

// "Include" (id 0, checked) over "Exclude" (id 1) in rows row and row + 1
// of the last column but one; returns "Include". Screen readers hear the
// pair under the list's name and each button with what it takes, since the
// two pairs look alike.
QRadioButton* ZEBMTXLator::addIncludeExclude(QGroupBox* box, int row, const QLineEdit* list,
                                             const char* what)
{
    auto* group = new QGroupBox(box);
    group->setAccessibleName(list->accessibleName());
    auto* layout = new QBoxLayout(QBoxLayout::TopToBottom, group);
    layout->setContentsMargins(filerow::frameMargins());
    layout->setSpacing(-1);
    auto* buttons = new QButtonGroup(group);
    QRadioButton* include = nullptr;
    for (const char* text : {"Include", "Exclude"}) {
        auto* button = new QRadioButton(text, group);
        button->setAccessibleName(QString("%1 %2").arg(text, what));
        button->setFixedSize(button->sizeHint());
        layout->addWidget(button, 1, Qt::AlignLeft);
        buttons->addButton(button, buttons->buttons().size());
        include = include ? include : button;
    }
    include->setChecked(true);
    static_cast<QGridLayout*>(box->layout())->addWidget(group, row, 5, 2, 1);
    return include;
}

void ZEBMTXLator::selected()
{
    translatePB->setDefault(true);
}

void ZEBMTXLator::checkCDB()
{
    bodyIndex->checkCDB();
}

void ZEBMTXLator::selectIndexFromCDB()
{
    bodyIndex->selectIndexFromCDB();
}

bool ZEBMTXLator::eventFilter(QObject* watched, QEvent* event)
{
    return bodyIndex->filterEvent(watched, event) || QWidget::eventFilter(watched, event);
}

// Output first, so that the overwrite question can come before the news
// that the input is missing. Nothing is touched until both are answered.
void ZEBMTXLator::translate()
{
    const QString typedOutput = outputLE->text().trimmed();
    if (typedOutput.isEmpty()) {
        MessageBox::information(nullptr, "Missing File", "You must supply an output Matrix file.",
                                "OK", "", "", 0, 0);
        return;
    }
    const QString output = finalOutputName(typedOutput);
    if (!outputMayBeWritten(output))
        return;
    if (inputCombo->text().isEmpty()) {
        MessageBox::information(nullptr, "Missing File",
                                "You must supply an input ZEB or HX DB file.", "OK", "", "", 0, 0);
        return;
    }
    if (!bodyIndex->checkIndex())
        return;
    const TranslatorCommand command = commandLine(output);
    if (command.refused())
        return;
    if (MessageBox::information(nullptr, "info", command.line(), "OK", "Cancel", "", 0, 1) != 0)
        return;
    if (runCommand(command.line(), "Translating ZEB to MTX ..."))
        MessageBox::warning(
            nullptr, "Translation Problems",
            "Translating ZEB to MTX problems.\nCheck your environment, permissions.", "OK", "", "",
            0, -1);
}

bool ZEBMTXLator::outputMayBeWritten(const QString& output)
{
    // A dangling link is a name taken too: exists() follows links.
    if (!QFileInfo::exists(output) && !QFileInfo(output).isSymLink())
        return true;
    const QString question = tr("A file called %1 already exists.\nDo you want to overwrite it?");
    return MessageBox::information(this, "Tamsel", question.arg(output), "&Yes", "No", "", 1, -1) ==
           0;
}

// Lists go in unquoted and unchanged; units only when not the default.
TranslatorCommand ZEBMTXLator::commandLine(const QString& output) const
{
    TranslatorCommand command("OKT_ZEB2MTX");
    command.file(bodyIndex->inputOperand()).text(" -o").file(output);
    command.text(listFlags(nodeIDs, nodesIncludeRB, "N") +
                 listFlags(modeList, modesIncludeRB, "M"));
    command.text(unitFlag(lengthCB, "-l") + unitFlag(massCB, "-m") + unitFlag(timeCB, "-t") +
                 unitFlag(forceCB, "-f"));
    if (fastInvarCB->isChecked())
        command.text(" -F");
    return command;
}
