#include "blocktableview.h"

#include "blocktablemodel.h"
#include "blockview.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>

#include <memory>

BlockTableView::BlockTableView(const BlockText& text, const BlockLayout& layout, QWidget* parent)
    : QTableView(parent), cells(new BlockTableModel(text, layout, this))
{
    setObjectName("table viewer");
    setAccessibleName("Table");
    setModel(cells);
    setWordWrap(false);
    setAlternatingRowColors(true);
    // Tab goes on to the next control; arrows walk the cells.
    setTabKeyNavigation(false);
    // Fixed heights keep a million rows cheap: no row is ever measured.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setStretchLastSection(cells->noteColumn() >= 0);
    // No sorting until the user asks: line order first, and again after a
    // third click.
    horizontalHeader()->setSortIndicatorClearable(true);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    fitSections();
}

void BlockTableView::showEvent(QShowEvent* event)
{
    for (QWidget* w = parentWidget(); w; w = w->parentWidget())
        if (!w->accessibleName().isEmpty()) {
            setAccessibleName(w->accessibleName() + " table");
            break;
        }
    QTableView::showEvent(event);
}

void BlockTableView::fitSections()
{
    const QFontMetrics metrics(font());
    verticalHeader()->setDefaultSectionSize(metrics.height() + 4);
    const int digit = metrics.horizontalAdvance('0');
    for (int column = 0; column < cells->columnCount(); ++column) {
        const int title = metrics.horizontalAdvance(cells->text(-1, column));
        setColumnWidth(column, qMax(cells->widthOf(column) * digit, title + 2 * digit) + digit);
    }
}

void BlockTableView::changeEvent(QEvent* event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fitSections();
}

void BlockTableView::showLineOrder()
{
    sortByColumn(-1, Qt::AscendingOrder);
}

BlockFileWriter::NextPiece
BlockTableView::pieces(std::function<void(int row, QByteArray&)> addRow) const
{
    constexpr int rowsAPiece = 1 << 12;
    const int rows = cells->rowCount();
    auto next = std::make_shared<int>(-1);
    return [next, rows, addRow = std::move(addRow)](QByteArray& piece, double& done) {
        const int end = qMin(rows, qMax(0, *next) + rowsAPiece);
        for (; *next < end; ++*next)
            addRow(*next, piece);
        done = rows > 0 ? double(end) / rows : 1.0;
        return end < rows;
    };
}

BlockFileWriter::NextPiece BlockTableView::csvPieces() const
{
    return pieces([this](int row, QByteArray& out) { cells->appendCsv(row, row + 1, out); });
}

// The selected rows between the leftmost and the rightmost selected column;
// bytes: about what they come to.
BlockFileWriter::NextPiece BlockTableView::tabSeparatedPieces(const QItemSelection& selection,
                                                              qint64* bytes) const
{
    auto rows = std::make_shared<std::vector<bool>>(size_t(cells->rowCount()), false);
    int left = INT_MAX, right = -1;
    qint64 rowCount = 0;
    for (const QItemSelectionRange& range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rowCount += !(*rows)[size_t(row)];
        std::fill(rows->begin() + range.top(), rows->begin() + range.bottom() + 1, true);
        left = qMin(left, range.left());
        right = qMax(right, range.right());
    }
    qint64 rowBytes = 0;
    for (int column = left; column <= right; ++column)
        rowBytes += cells->widthOf(column) + 1;
    *bytes = rowCount * rowBytes;
    return pieces([this, rows, selection, left, right](int row, QByteArray& out) {
        if (row < 0 || (*rows)[size_t(row)])
            out += cells->tabSeparatedRow(selection, row, left, right).toUtf8();
    });
}

// As the text view does: what would crowd the clipboard goes to a file.
void BlockTableView::copy()
{
    const QItemSelection selection = selectionModel()->selection();
    if (selection.isEmpty())
        return;
    qint64 bytes = 0;
    const BlockFileWriter::NextPiece next = tabSeparatedPieces(selection, &bytes);
    if (bytes > BlockView::copyLimit) {
        saveCopy(next, bytes);
        return;
    }
    QByteArray all;
    double done;
    while (next(all, done)) {
    }
    QGuiApplication::clipboard()->setText(QString::fromUtf8(all));
}

void BlockTableView::saveCopy(const BlockFileWriter::NextPiece& next, qint64 bytes)
{
    const QString path = BlockFileWriter::askSaveInstead(this, bytes);
    if (!path.isEmpty())
        BlockFileWriter::writeOrWarn(this, "Saving the selection", path, next);
}

bool BlockTableView::exportCsv(const QString& path, QString& error) const
{
    return BlockFileWriter::write(nullptr, QString(), path, csvPieces(), error);
}

void BlockTableView::exportCsvAs()
{
    const QString path =
        QFileDialog::getSaveFileName(this, "Export CSV", QString(), "CSV files (*.csv)");
    if (!path.isEmpty())
        BlockFileWriter::writeOrWarn(this, "Exporting the table", path, csvPieces());
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
    menu.addAction("Line Order", this, &BlockTableView::showLineOrder)
        ->setEnabled(horizontalHeader()->sortIndicatorSection() >= 0);
    menu.addSeparator();
    menu.addAction("Export CSV…", this, &BlockTableView::exportCsvAs);
    menu.exec(event->globalPos());
}
