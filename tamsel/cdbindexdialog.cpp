#include "cdbindexdialog.h"

#include "dialogheading.h"

#include "zeb.h"

#include <QApplication>
#include <QBoxLayout>
#include <QFontMetrics>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <cstdio>

QCDBIndexDialog::QCDBIndexDialog(QWidget* parent, const char*, QString dbFile)
    : QDialog(parent), dbFile(dbFile)
{
    setObjectName("ListDialog");
    const int fh = QFontMetrics(QApplication::font()).height();

    auto* mainLayout = new QVBoxLayout(this);
    mainLayout->addStretch(1);
    QLabel* label = addDialogHeading(mainLayout, "Select a flexible body from the HX DB: ", this);

    bodyList = new QTreeWidget(this);
    bodyList->setLineWidth(1);
    bodyList->setSelectionMode(QAbstractItemView::SingleSelection);
    bodyList->setToolTip("Flexible Bodies in HX DB");
    bodyList->setRootIsDecorated(false);
    bodyList->setHeaderLabels({"Index", "Body Info"});
    // The index stays text, so "10" sorts ahead of "2"; a header click
    // sorts by its column, though no arrow says so.
    bodyList->setSortingEnabled(true);
    bodyList->sortByColumn(0, Qt::AscendingOrder);
    bodyList->header()->setSortIndicatorShown(false);
    const int count = fillList();
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
    resize(400, qMax(count, 0) * fh + label->height() + selectButton->height() + 200);
    chosenIndex = "1";
}

// One row per body, as the library describes it; returns the body count.
namespace
{

// A row that sorts its text the way the user reads it.
class BodyItem : public QTreeWidgetItem
{
public:
    using QTreeWidgetItem::QTreeWidgetItem;
    bool operator<(const QTreeWidgetItem& other) const override
    {
        const int column = treeWidget() ? treeWidget()->sortColumn() : 0;
        return text(column).localeAwareCompare(other.text(column)) < 0;
    }
};

} // namespace

int QCDBIndexDialog::fillList()
{
    const QByteArray file = dbFile.toLocal8Bit();
    const int count = ZEB_BodyCount(file.constData());
    char indexText[64];
    char info[1024];
    for (int i = 1; i <= count; ++i) {
        std::snprintf(indexText, sizeof indexText, "%d", i);
        ZEB_GetBodyInfo(file.constData(), i, info);
        info[sizeof info - 1] = '\0'; // a library that forgot the terminator
        new BodyItem(bodyList, {QString::fromLocal8Bit(indexText), QString::fromLocal8Bit(info)});
    }
    for (int column = 0; column < 2; ++column)
        bodyList->resizeColumnToContents(column);
    return count;
}

void QCDBIndexDialog::processSelect()
{
    for (QTreeWidgetItemIterator it(bodyList); *it; ++it) {
        if ((*it)->isSelected()) {
            chosenIndex = (*it)->text(0);
            done(1);
            return;
        }
    }
}
