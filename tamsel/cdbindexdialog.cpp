#include "cdbindexdialog.h"

#include "bodylistmodel.h"
#include "dialogheading.h"

#include <QApplication>
#include <QBoxLayout>
#include <QFontMetrics>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>
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
    // Assistive technology announces the list by the heading beside it.
    label->setBuddy(bodyList);
    bodyList->setAccessibleName(label->text().trimmed().remove(QRegularExpression(":$")));
    const qint64 count = bodies->bodyCount();
    bodyList->setMinimumHeight(300);
    auto* listRow = new QHBoxLayout;
    listRow->setSpacing(0);
    listRow->addWidget(bodyList);
    listRow->addWidget(scroller);
    mainLayout->addLayout(listRow, 10);
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
    fitRows();
}

// A plain list of rows: no grid, no row numbers, one row highlighted at a
// time.
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
    // Wide enough for the largest index, whichever rows are in sight.
    const int digits =
        QFontMetrics(bodyList->font()).horizontalAdvance(QString::number(bodies->bodyCount()));
    header->resizeSection(0, qMax(header->sectionSizeHint(0), digits + 16));
    connect(header, &QHeaderView::sortIndicatorChanged, this, [this] {
        if (chosenBody)
            reveal(bodies->rowOf(chosenBody));
        markChosen();
    });
    connect(bodyList->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QCDBIndexDialog::noteChoice);
    setUpScroller();
}

// The list's own scroll bar would span every row; this one moves the rows
// in sight through the list.
void QCDBIndexDialog::setUpScroller()
{
    bodyList->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller = new QScrollBar(Qt::Vertical, this);
    scroller->setObjectName("bodyScroller");
    scroller->setAccessibleName("Bodies in sight");
    scroller->setFocusPolicy(Qt::NoFocus);
    connect(scroller, &QScrollBar::valueChanged, this, &QCDBIndexDialog::showFrom);
    bodyList->installEventFilter(this);
    bodyList->viewport()->installEventFilter(this);
}

// As many rows as the list has room for, one of them perhaps in part.
void QCDBIndexDialog::fitRows()
{
    const int height = bodyList->verticalHeader()->defaultSectionSize();
    const int whole = qMax(1, bodyList->viewport()->height() / height);
    scroller->setPageStep(whole);
    scroller->setRange(0, qMax(0, bodies->bodyCount() - whole));
    showFrom(scroller->value());
}

void QCDBIndexDialog::showFrom(int row)
{
    marking = true;
    bodies->showRows(row, scroller->pageStep() + 1);
    marking = false;
    markChosen();
}

// Scrolls the least that brings a row of the whole list into sight.
void QCDBIndexDialog::reveal(int row)
{
    const int first = bodies->firstShown();
    if (row < first)
        scroller->setValue(row);
    else if (row >= first + scroller->pageStep())
        scroller->setValue(row - scroller->pageStep() + 1);
}

// Highlights the chosen body where it is in sight.
void QCDBIndexDialog::markChosen()
{
    marking = true;
    const int row = chosenBody ? bodies->rowOf(chosenBody) - bodies->firstShown() : -1;
    QItemSelectionModel* selection = bodyList->selectionModel();
    if (row >= 0 && row < bodies->rowCount())
        selection->setCurrentIndex(bodies->index(row, 0),
                                   QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    else
        selection->clearSelection();
    marking = false;
}

// A row the user highlights becomes the choice; one taken back in sight
// leaves none. A choice that scrolls out of sight stays.
void QCDBIndexDialog::noteChoice()
{
    if (marking)
        return;
    const QModelIndexList rows = bodyList->selectionModel()->selectedRows();
    const int first = bodies->firstShown();
    if (!rows.isEmpty())
        chosenBody = bodies->bodyAt(first + rows.first().row());
    else if (chosenBody && bodies->rowOf(chosenBody) - first < bodies->rowCount() &&
             bodies->rowOf(chosenBody) >= first)
        chosenBody = 0;
}

// The keys that move through the whole list, not just the rows in sight.
bool QCDBIndexDialog::moveByKey(const QKeyEvent& key)
{
    const int count = bodies->bodyCount();
    const int at = chosenBody ? bodies->rowOf(chosenBody) : -1;
    const int page = scroller->pageStep();
    int to = 0;
    switch (key.key()) {
    case Qt::Key_Up:
        to = at - 1;
        break;
    case Qt::Key_Down:
        to = at + 1;
        break;
    case Qt::Key_PageUp:
        to = at - page;
        break;
    case Qt::Key_PageDown:
        to = at + page;
        break;
    case Qt::Key_Home:
        to = 0;
        break;
    case Qt::Key_End:
        to = count - 1;
        break;
    default:
        return false;
    }
    if (count == 0)
        return true;
    to = qBound(0, to, count - 1);
    chosenBody = bodies->bodyAt(to);
    reveal(to);
    markChosen();
    return true;
}

// Digits typed in quick succession pick the body of that index, wherever
// it is in the list.
bool QCDBIndexDialog::typeIndex(const QKeyEvent& key)
{
    const QString digits = key.text();
    if (digits.isEmpty() || !digits.front().isDigit() || (key.modifiers() & ~Qt::KeypadModifier))
        return false;
    if (!sinceTyped.isValid() || sinceTyped.elapsed() > QApplication::keyboardInputInterval())
        typed.clear();
    sinceTyped.start();
    typed += digits;
    bool number = false;
    const int body = typed.toInt(&number);
    if (number && body >= 1 && body <= bodies->bodyCount()) {
        chosenBody = body;
        reveal(bodies->rowOf(body));
        markChosen();
    }
    return true;
}

bool QCDBIndexDialog::eventFilter(QObject* watched, QEvent* event)
{
    const bool inList = watched == bodyList->viewport();
    if (inList && event->type() == QEvent::Resize)
        fitRows();
    if (inList && event->type() == QEvent::Wheel)
        return QCoreApplication::sendEvent(scroller, event);
    if (watched == bodyList && event->type() == QEvent::KeyPress)
        return moveByKey(*static_cast<QKeyEvent*>(event)) ||
               typeIndex(*static_cast<QKeyEvent*>(event));
    return QDialog::eventFilter(watched, event);
}

void QCDBIndexDialog::processSelect()
{
    if (!chosenBody)
        return;
    chosenIndex = QString::number(chosenBody);
    done(1);
}
