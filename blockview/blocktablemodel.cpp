#include "blocktablemodel.h"

#include "blockmodes.h"

#include <QBrush>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>
#include <numeric>
#include <string_view>

namespace
{

const char notData[] = "Not a data line";
const char noteTitle[] = "Note";
const char modeTitle[] = "Mode";

} // namespace

BlockTableModel::BlockTableModel(const BlockText& text, const BlockLayout& layout, QObject* parent)
    : QAbstractTableModel(parent), cols(text, layout)
{
    findModes(layout);
    for (qsizetype line = 0; line < cols.lineCount() && !hasNotes; ++line)
        hasNotes = !cols.fits(line);
}

// The plot's split, so that both views agree; blocks of per-mode node lists
// are those whose first column is the node "ID".
void BlockTableModel::findModes(const BlockLayout& layout)
{
    const char* first = layout.columnTitles[0];
    if (layout.columnCount != 7 || !first || std::strcmp(first, "ID") != 0)
        return;
    const BlockModes modes(cols);
    if (!modes.known())
        return;
    for (const BlockModes::Mode& mode : modes.modes()) {
        modeStarts.push_back(mode.firstLine);
        modeNumbers.push_back(BlockModes::headingNumber(mode.name));
    }
}

int BlockTableModel::modeOf(qsizetype line) const
{
    const auto after = std::upper_bound(modeStarts.begin(), modeStarts.end(), line);
    return after == modeStarts.begin() ? 0 : modeNumbers[size_t(after - modeStarts.begin() - 1)];
}

int BlockTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(qMin<qsizetype>(cols.lineCount(), INT_MAX));
}

int BlockTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : cols.columnCount() + (modeStarts.empty() ? 0 : 1) + hasNotes;
}

qsizetype BlockTableModel::lineOf(int row) const
{
    return order.empty() ? row : order[size_t(row)];
}

bool BlockTableModel::isLayoutColumn(int column) const
{
    return layoutColumn(column) >= 0 && layoutColumn(column) < cols.columnCount();
}

QString BlockTableModel::text(int row, int column) const
{
    if (row < 0)
        return column == modeColumn()   ? QString(modeTitle)
               : column == noteColumn() ? QString(noteTitle)
                                        : cols.title(layoutColumn(column));
    const qsizetype line = lineOf(row);
    if (column == modeColumn()) {
        const int mode = modeOf(line);
        return mode > 0 ? QString::number(mode) : QString();
    }
    const bool fits = cols.fits(line);
    if (column == noteColumn())
        return fits ? QString() : cols.misfit(line);
    return fits ? cols.cell(line, layoutColumn(column)) : QString();
}

int BlockTableModel::widthOf(int column) const
{
    if (column == modeColumn())
        return 5;
    if (column == noteColumn())
        return 40; // the rest shows in the tool tip
    return cols.width(layoutColumn(column));
}

QVariant BlockTableModel::data(const QModelIndex& index, int role) const
{
    const qsizetype line = lineOf(index.row());
    const bool fits = cols.fits(line);
    switch (role) {
    case Qt::DisplayRole:
        return text(index.row(), index.column());
    case Qt::TextAlignmentRole: {
        const bool right =
            index.column() == modeColumn() ||
            (isLayoutColumn(index.column()) && cols.numberAt(line, layoutColumn(index.column())));
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
        if (!fits)
            return cols.misfit(line);
        break;
    case Qt::AccessibleDescriptionRole:
        if (!fits)
            return QString(notData);
        break;
    }
    return {};
}

QVariant BlockTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::ToolTipRole && section == noteColumn())
        return QString("Lines that are not data, whole");
    if (role != Qt::DisplayRole)
        return {};
    // A row keeps the number of its line, also when sorted.
    if (orientation == Qt::Vertical)
        return qlonglong(lineOf(section) + 1);
    return text(-1, section);
}

void BlockTableModel::sort(int column, Qt::SortOrder sortOrder)
{
    if (column < 0 && order.empty())
        return; // line order already: a reset would make the view measure every row again
    beginResetModel();
    order.clear();
    order.shrink_to_fit();
    const bool down = sortOrder == Qt::DescendingOrder;
    if (column >= 0 && column < columnCount()) {
        order.resize(size_t(rowCount()));
        std::iota(order.begin(), order.end(), 0);
        std::vector<double> keys;
        if (numericKeys(column, keys))
            sortNumeric(keys, down);
        else
            sortText(column, down);
    }
    endResetModel();
}

bool BlockTableModel::numericKeys(int column, std::vector<double>& keys) const
{
    if (!isLayoutColumn(column) && column != modeColumn())
        return false;
    keys.assign(order.size(), NAN);
    if (column == modeColumn()) {
        for (qsizetype line = 0; line < qsizetype(keys.size()); ++line)
            if (const int mode = modeOf(line))
                keys[size_t(line)] = mode;
        return true;
    }
    // A column of numbers may hold a word here and there (a repeated title,
    // say): those go behind the numbers.
    const int c = layoutColumn(column);
    qsizetype numbers = 0, words = 0;
    QByteArray spare;
    for (qsizetype line = 0; line < qsizetype(keys.size()); ++line) {
        if (const std::optional<double> value = cols.numberAt(line, c)) {
            keys[size_t(line)] = *value;
            ++numbers;
        } else if (!cols.cellBytes(line, c, spare).isEmpty()) {
            ++words;
        }
    }
    return numbers > words;
}

void BlockTableModel::sortNumeric(const std::vector<double>& keys, bool down)
{
    const auto numbersEnd =
        std::stable_partition(order.begin(), order.end(),
                              [&keys](std::int32_t row) { return !std::isnan(keys[size_t(row)]); });
    std::stable_partition(numbersEnd, order.end(),
                          [this](std::int32_t row) { return cols.fits(row); });
    std::stable_sort(order.begin(), numbersEnd, [&keys, down](std::int32_t a, std::int32_t b) {
        const double ka = keys[size_t(a)], kb = keys[size_t(b)];
        return down ? ka > kb : ka < kb;
    });
}

// Each key made once, a view of the cell's bytes: UTF-8 in byte order is
// the order of the characters' code points.
void BlockTableModel::sortText(int column, bool down)
{
    const bool notes = column == noteColumn();
    const int c = layoutColumn(column);
    std::vector<std::string_view> keys(order.size());
    std::vector<bool> keyed(order.size());
    std::deque<QByteArray> spare; // the bytes of cells of wide characters
    for (size_t line = 0; line < keys.size(); ++line) {
        keyed[line] = cols.fits(qsizetype(line)) != notes;
        if (!keyed[line])
            continue;
        QByteArray wide;
        QByteArrayView bytes =
            notes ? cols.lineBytes(qsizetype(line)) : cols.cellBytes(qsizetype(line), c, wide);
        if (!wide.isNull())
            bytes = spare.emplace_back(std::move(wide));
        keys[line] = std::string_view(bytes.data(), size_t(bytes.size()));
    }
    const auto keyedEnd = std::stable_partition(
        order.begin(), order.end(), [&keyed](std::int32_t row) { return keyed[size_t(row)]; });
    std::stable_sort(order.begin(), keyedEnd, [&keys, down](std::int32_t a, std::int32_t b) {
        const int compared = keys[size_t(a)].compare(keys[size_t(b)]);
        return down ? compared > 0 : compared < 0;
    });
}

QString BlockTableModel::tabSeparatedRow(const QItemSelection& selection, int row, int left,
                                         int right) const
{
    QString out;
    for (int column = left; column <= right; ++column) {
        if (column > left)
            out += '\t';
        if (row < 0 || selection.contains(index(row, column)))
            out += text(row, column);
    }
    return out += '\n';
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

void BlockTableModel::appendCsv(int from, int to, QByteArray& out) const
{
    for (int row = from; row < to; ++row) {
        for (int column = 0; column < columnCount(); ++column) {
            if (column > 0)
                out += ',';
            out += csvField(text(row, column)).toUtf8();
        }
        out += "\r\n";
    }
}
