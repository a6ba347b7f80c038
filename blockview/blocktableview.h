#pragma once

#include "blockfilewriter.h"

#include <QTableView>

class BlockTableModel;
class BlockText;
struct BlockLayout;

// The table view of a block page: every row there at once, made when
// shown; a click on a title sorts, a second turns the order round, a third
// brings back line order. Ctrl+C copies the selection as tab-separated text
// under its titles (to a file when too large for the clipboard), and the
// context menu also exports the whole table as CSV.
class BlockTableView : public QTableView
{
    Q_OBJECT

public:
    BlockTableView(const BlockText& text, const BlockLayout& layout, QWidget* parent = nullptr);

    BlockTableModel* tableModel() const { return cells; }
    // False, with the reason, when the file cannot be written.
    bool exportCsv(const QString& path, QString& error) const;

public slots:
    void copy();
    // Asks for a file name, writes under a progress dialog, warns when that
    // fails.
    void exportCsvAs();
    void showLineOrder();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    // Names the table after its page for assistive technology, as in
    // "Eigenvalues table": the page's name is its nearest named ancestor's.
    void showEvent(QShowEvent* event) override;

private:
    void fitSections();
    // Row -1 (the titles), then every row, a few thousand to a piece.
    BlockFileWriter::NextPiece pieces(std::function<void(int row, QByteArray&)> addRow) const;
    BlockFileWriter::NextPiece csvPieces() const;
    BlockFileWriter::NextPiece tabSeparatedPieces(const QItemSelection& selection,
                                                  qint64* bytes) const;
    void saveCopy(const BlockFileWriter::NextPiece& next, qint64 bytes);

    BlockTableModel* cells;
};
