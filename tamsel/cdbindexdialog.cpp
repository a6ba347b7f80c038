#include "cdbindexdialog.h"

#include "bodylistmodel.h"
#include "dialogheading.h"

#include <QApplication>
#include <QBoxLayout>
#include <QFontMetrics>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTableView>

QCDBIndexDialog::QCDBIndexDialog(QWidget* parent, const char*, QString file)
    : QDialog(parent), dbFile(file)
{
    setObjectName("ListDialog");
    const int fh = QFontMetrics(QApplication::font()).height();

    auto* mainLayout = new QVBoxLayout(this);
    mainLayout->addStretch(1);
    QLabel* label = addDialogHeading(mainLayout, "Select a flexible body from the HX DB: ", this);

    bodies = new BodyListModel(dbFile, this);
    setUpList();
    const qint64 count = bodies->rowCount();
    bodyList->setMinimumHeight(300);
    mainLayout->addWidget(bodyList, 10);
    mainLayout->addStretch(1);
    mainLayout->addStretch(1);

    // Both buttons take the size of "Select".
    auto* buttonRow = new QHBoxLayout;
    auto* selectButton = new QPushButton("Select", this);
    const auto addButton = [&](QPushButton* button, const char* name) {
        button->setObjectName(name);
        button->setFixedSize(selectButton->sizeHint());
        buttonRow->addWidget(button, 4, Qt::AlignHCenter);
        buttonRow->addStretch(1);
    };
    addButton(selectButton, "Select the highlighted flexbody");
    connect(selectButton, &QPushButton::clicked, this, &QCDBIndexDialog::processSelect);
    auto* cancelButton = new QPushButton("Cancel", this);
    addButton(cancelButton, "Cancel");
    connect(cancelButton, &QPushButton::clicked, this, &QDialog::reject);
    mainLayout->addLayout(buttonRow, 0);
    mainLayout->activate();

    setWindowTitle("Information");
    // One line per body, up to the screen's height: a window of a million
    // lines would cost gigabytes of pixels.
    const qint64 wanted = count * fh + label->height() + selectButton->height() + 200;
    resize(400, int(qMin<qint64>(wanted, screen()->availableGeometry().height())));
    chosenIndex = "1";
}

// A plain list of rows: no grid, no row numbers, one row highlighted at a
// time. A table view keeps nothing per row, unlike a tree view.
void QCDBIndexDialog::setUpList()
{
    bodyList = new QTableView(this);
    bodyList->setModel(bodies);
    bodyList->setLineWidth(1);
    bodyList->setSelectionMode(QAbstractItemView::SingleSelection);
    bodyList->setSelectionBehavior(QAbstractItemView::SelectRows);
    bodyList->setToolTip("Flexible Bodies in HX DB");
    bodyList->setShowGrid(false);
    bodyList->setWordWrap(false);
    bodyList->setTabKeyNavigation(false);
    bodyList->verticalHeader()->hide();
    bodyList->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    bodyList->verticalHeader()->setDefaultSectionSize(QFontMetrics(QApplication::font()).height() +
                                                      4);
    QHeaderView* header = bodyList->horizontalHeader();
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setHighlightSections(false);
    header->setStretchLastSection(true);
    // The index stays text, so "10" sorts ahead of "2"; a header click
    // sorts by its column, though no arrow says so.
    bodyList->setSortingEnabled(true);
    bodyList->sortByColumn(0, Qt::AscendingOrder);
    header->setSortIndicatorShown(false);
    // Sized to the rows in sight: the others are not made.
    bodyList->resizeColumnsToContents();
}

void QCDBIndexDialog::processSelect()
{
    const QModelIndexList rows = bodyList->selectionModel()->selectedRows();
    if (rows.isEmpty())
        return;
    chosenIndex = QString::number(bodies->bodyAt(rows.first().row()));
    done(1);
}
