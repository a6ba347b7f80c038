#include "blocktableview.h"

#include "blockfilewriter.h"
#include "blocktablemodel.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>

BlockTableView::BlockTableView(const BlockText& text, const BlockLayout& layout, QWidget* parent)
    : QTableView(parent), cells(new BlockTableModel(text, layout, this))
{
    setObjectName("table viewer");
    setAccessibleName("Table");
    setModel(cells);
    setWordWrap(false);
    setAlternatingRowColors(true);
    // Fixed heights keep a million rows cheap: no row is ever measured.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    // No sorting until the user asks: the text's own order first.
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    fitSections();
}

void BlockTableView::fitSections()
{
    const QFontMetrics metrics(font());
    verticalHeader()->setDefaultSectionSize(metrics.height() + 4);
    const int digit = metrics.horizontalAdvance('0');
    const BlockColumns& cols = cells->columns();
    for (int column = 0; column < cols.columnCount(); ++column) {
        const int title = metrics.horizontalAdvance(cols.title(column));
        setColumnWidth(column, qMax(cols.width(column) * digit, title + 2 * digit) + digit);
    }
}

void BlockTableView::changeEvent(QEvent* event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fitSections();
}

void BlockTableView::copy()
{
    const QItemSelection selection = selectionModel()->selection();
    if (!selection.isEmpty())
        QGuiApplication::clipboard()->setText(cells->tabSeparated(selection));
}

bool BlockTableView::exportCsv(const QString& path, QString& error) const
{
    return BlockFileWriter::write(path, cells->csv(), error);
}

void BlockTableView::exportCsvAs()
{
    const QString path =
        QFileDialog::getSaveFileName(this, "Export CSV", QString(), "CSV files (*.csv)");
    if (!path.isEmpty())
        BlockFileWriter::writeOrWarn(this, path, cells->csv());
}

void BlockTableView::selectAll()
{
    while (cells->canFetchMore({}))
        cells->fetchMore({});
    QTableView::selectAll();
}

void BlockTableView::keyPressEvent(QKeyEvent* event)
{
    if (event == QKeySequence::Copy) {
        copy();
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

void BlockTableView::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu menu(this);
    menu.setObjectName("table menu");
    QAction* copyAction = menu.addAction("Copy", this, &BlockTableView::copy);
    copyAction->setShortcut(QKeySequence::Copy);
    copyAction->setEnabled(selectionModel()->hasSelection());
    menu.addAction("Select All", this, &QTableView::selectAll);
    menu.addSeparator();
    menu.addAction("Export CSV…", this, &BlockTableView::exportCsvAs);
    menu.exec(event->globalPos());
}
