#pragma once

#include "blockcolumns.h"

#include <QAbstractTableModel>
#include <QItemSelection>

#include <cstdint>
#include <vector>

// A block's text as a table: each row is cut into cells when the view asks
// for it. Sorting keeps the text as it is and orders a list of line numbers
// (4 bytes a row, 8 more for the keys while sorting).
class BlockTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // The text must outlive the model.
    BlockTableModel(const BlockText& text, const BlockLayout& layout, QObject* parent = nullptr);

    // The rows made known to the view so far: a view asks for more as it
    // scrolls, so that its header grows with what was seen, not the block.
    int rowCount(const QModelIndex& parent = {}) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;
    // Every row of the block, known or not.
    int totalRows() const;
    static constexpr int fetchStep = 1 << 14;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    // Numeric when most data cells of the column are numbers, else by text;
    // lines that are not data stay at the end. A column below 0 brings back
    // the text's own order.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    const BlockColumns& columns() const { return cols; }
    // The text's line shown in a row.
    qsizetype lineOf(int row) const;

    // The selected cells, a row a line, cells parted by tabs; the gaps of a
    // ragged selection stay empty.
    QString tabSeparated(const QItemSelection& selection) const;
    // The titles and every row, in the order shown (CRLF line ends).
    QByteArray csv() const;
    static QString csvField(const QString& cell);

private:
    void sortNumeric(std::vector<double>& keys, Qt::SortOrder order);
    void sortText(int column, Qt::SortOrder order);
    // Fills keys (NaN where no number); false when most cells are words.
    bool numericKeys(int column, std::vector<double>& keys) const;

    BlockColumns cols;
    std::vector<std::int32_t> order; // empty: the text's own order
    int known = 0;                   // rows made known so far
};
