#include "blocktablemodel.h"

#include <QBrush>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

namespace
{

const char notData[] = "Not a data line: shown whole";

} // namespace

BlockTableModel::BlockTableModel(const BlockText& text, const BlockLayout& layout, QObject* parent)
    : QAbstractTableModel(parent), cols(text, layout)
{
    known = qMin(fetchStep, totalRows()); // the first rows at once
}

int BlockTableModel::totalRows() const
{
    return int(qMin<qsizetype>(cols.lineCount(), INT_MAX));
}

int BlockTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : qMin(known, totalRows());
}

bool BlockTableModel::canFetchMore(const QModelIndex& parent) const
{
    return !parent.isValid() && known < totalRows();
}

void BlockTableModel::fetchMore(const QModelIndex& parent)
{
    if (!canFetchMore(parent))
        return;
    const int more = qMin(fetchStep, totalRows() - known);
    beginInsertRows({}, known, known + more - 1);
    known += more;
    endInsertRows();
}

int BlockTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : cols.columnCount();
}

qsizetype BlockTableModel::lineOf(int row) const
{
    return order.empty() ? row : order[size_t(row)];
}

QVariant BlockTableModel::data(const QModelIndex& index, int role) const
{
    const qsizetype line = lineOf(index.row());
    const bool fits = cols.fits(line);
    switch (role) {
    case Qt::DisplayRole:
        return cols.cell(line, index.column());
    case Qt::TextAlignmentRole: {
        double value;
        const bool right = cols.number(line, index.column(), value);
        return QVariant::fromValue(Qt::AlignVCenter | (right ? Qt::AlignRight : Qt::AlignLeft));
    }
    case Qt::FontRole:
        if (!fits) {
            QFont font;
            font.setItalic(true);
            return font;
        }
        break;
    case Qt::ForegroundRole:
        if (!fits)
            return QGuiApplication::palette().brush(QPalette::PlaceholderText);
        break;
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        if (!fits)
            return QString(notData);
        break;
    }
    return {};
}

QVariant BlockTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    // A row keeps the number of its line, also when sorted.
    if (orientation == Qt::Vertical)
        return qlonglong(lineOf(section) + 1);
    return cols.title(section);
}

void BlockTableModel::sort(int column, Qt::SortOrder sortOrder)
{
    beginResetModel();
    order.clear();
    order.shrink_to_fit();
    if (column >= 0 && column < cols.columnCount()) {
        std::vector<double> keys;
        if (numericKeys(column, keys))
            sortNumeric(keys, sortOrder);
        else
            sortText(column, sortOrder);
    }
    endResetModel();
}

bool BlockTableModel::numericKeys(int column, std::vector<double>& keys) const
{
    // A column of numbers may hold a word here and there (a repeated title,
    // say): those go behind the numbers.
    keys.assign(size_t(totalRows()), NAN);
    qsizetype numbers = 0, words = 0;
    for (qsizetype line = 0; line < qsizetype(keys.size()); ++line) {
        if (cols.number(line, column, keys[size_t(line)]))
            ++numbers;
        else if (cols.fits(line) && !cols.cell(line, column).isEmpty())
            ++words;
    }
    return numbers > words;
}

void BlockTableModel::sortNumeric(std::vector<double>& keys, Qt::SortOrder sortOrder)
{
    order.resize(keys.size());
    std::iota(order.begin(), order.end(), 0);
    const bool down = sortOrder == Qt::DescendingOrder;
    std::sort(order.begin(), order.end(), [&keys, down](std::int32_t a, std::int32_t b) {
        const double ka = keys[size_t(a)], kb = keys[size_t(b)];
        if (std::isnan(ka) || std::isnan(kb))
            return std::isnan(ka) == std::isnan(kb) ? a < b : std::isnan(kb);
        if (ka != kb)
            return down ? ka > kb : ka < kb;
        return a < b;
    });
}

void BlockTableModel::sortText(int column, Qt::SortOrder sortOrder)
{
    order.resize(size_t(totalRows()));
    std::iota(order.begin(), order.end(), 0);
    const bool down = sortOrder == Qt::DescendingOrder;
    std::stable_sort(order.begin(), order.end(),
                     [this, column, down](std::int32_t a, std::int32_t b) {
                         const bool fa = cols.fits(a), fb = cols.fits(b);
                         if (fa != fb)
                             return fa;
                         const int c = cols.cell(a, column).compare(cols.cell(b, column));
                         return down ? c > 0 : c < 0;
                     });
}

QString BlockTableModel::tabSeparated(const QItemSelection& selection) const
{
    std::vector<bool> rows(size_t(rowCount()), false);
    int left = INT_MAX, right = -1;
    for (const QItemSelectionRange& range : selection) {
        std::fill(rows.begin() + range.top(), rows.begin() + range.bottom() + 1, true);
        left = qMin(left, range.left());
        right = qMax(right, range.right());
    }
    QString out;
    for (int row = 0; row < int(rows.size()); ++row) {
        if (!rows[size_t(row)])
            continue;
        for (int column = left; column <= right; ++column) {
            if (column > left)
                out += '\t';
            if (selection.contains(index(row, column)))
                out += cols.cell(lineOf(row), column);
        }
        out += '\n';
    }
    return out;
}

QString BlockTableModel::csvField(const QString& cell)
{
    static const QString special = QStringLiteral(",\"\r\n");
    if (std::none_of(cell.begin(), cell.end(), [](QChar c) { return special.contains(c); }))
        return cell;
    QString quoted = cell;
    quoted.replace('"', "\"\"");
    return '"' + quoted + '"';
}

QByteArray BlockTableModel::csv() const
{
    QByteArray out;
    const auto addRow = [this, &out](const std::function<QString(int)>& cellOf) {
        for (int column = 0; column < cols.columnCount(); ++column) {
            if (column > 0)
                out += ',';
            out += csvField(cellOf(column)).toUtf8();
        }
        out += "\r\n";
    };
    addRow([this](int column) { return cols.title(column); });
    for (int row = 0; row < totalRows(); ++row)
        addRow([this, row](int column) { return cols.cell(lineOf(row), column); });
    return out;
}
