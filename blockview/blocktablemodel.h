#pragma once

#include "blockcolumns.h"

#include <QAbstractTableModel>
#include <QItemSelection>

#include <cstdint>
#include <vector>

// A block's text as a table: each row is cut into cells when the view asks
// for it, so every row is there at once at no cost a row. Blocks of
// per-mode node lists get a "Mode" column first when their split is known;
// a block with lines that are not data gets a "Note" column last, where
// such a line stands whole.
// Sorting keeps the text as it is and orders a list of line numbers
// (4 bytes a row, and the keys while sorting).
class BlockTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // The text must outlive the model.
    BlockTableModel(const BlockText& text, const BlockLayout& layout, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int totalRows() const { return rowCount(); }
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    // Numeric when most data cells of the column are numbers, with the
    // text cells behind them in line order; else by text, lines without a
    // cell there at the end. A column below 0 brings back line order.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    const BlockColumns& columns() const { return cols; }
    // -1 when the table has no such column.
    int modeColumn() const { return modeStarts.empty() ? -1 : 0; }
    int noteColumn() const { return hasNotes ? columnCount() - 1 : -1; }
    // The text's line shown in a row.
    qsizetype lineOf(int row) const;
    // What a cell shows; row -1 gives the column's title.
    QString text(int row, int column) const;
    // How many characters a column's cells take at most, as a rule.
    int widthOf(int column) const;

    // One row of the selected cells between two columns, parted by tabs,
    // the gaps of a ragged selection empty; row -1: the titles.
    QString tabSeparatedRow(const QItemSelection& selection, int row, int left, int right) const;
    // Rows [from, to) as CSV (CRLF line ends); row -1 is the titles.
    void appendCsv(int from, int to, QByteArray& out) const;
    static QString csvField(const QString& cell);

private:
    int layoutColumn(int column) const { return column - (modeStarts.empty() ? 0 : 1); }
    bool isLayoutColumn(int column) const;
    // Where each mode starts and its number, when the block is written mode
    // by mode and its split is known; 0 for a line before the first.
    void findModes(const BlockLayout& layout);
    int modeOf(qsizetype line) const;
    void sortNumeric(const std::vector<double>& keys, bool down);
    void sortText(int column, bool down);
    // Fills keys (NaN where no number); false when most cells are words.
    bool numericKeys(int column, std::vector<double>& keys) const;

    BlockColumns cols;
    std::vector<qsizetype> modeStarts;
    std::vector<int> modeNumbers;
    bool hasNotes = false;
    std::vector<std::int32_t> order; // empty: line order
};
