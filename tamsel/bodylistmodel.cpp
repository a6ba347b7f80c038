#include "bodylistmodel.h"

#include "zeb.h"

#include <QCollator>

#include <algorithm>

namespace
{

// How many numbers of 1..n, in text order, start with prefix: the subtree
// of prefix in the tree of decimal strings.
qint64 numbersUnder(qint64 n, qint64 prefix)
{
    qint64 total = 0;
    for (qint64 first = prefix, last = prefix; first <= n; first *= 10, last = last * 10 + 9)
        total += std::min(n, last) - first + 1;
    return total;
}

// The k-th (from 0) of the numbers 1..n sorted as text, without the list:
// walk down the tree of prefixes, skipping whole subtrees.
int kthInTextOrder(qint64 n, qint64 k)
{
    qint64 current = 1;
    while (k > 0) {
        const qint64 under = numbersUnder(n, current);
        if (under <= k) {
            k -= under;
            ++current;
        } else {
            current *= 10;
            --k;
        }
    }
    return int(current);
}

// Where number lies (from 0) among 1..n sorted as text: the subtrees of the
// smaller digits at each of its prefixes, and the shorter prefixes
// themselves, come before it.
qint64 rankInTextOrder(qint64 n, qint64 number)
{
    const QByteArray digits = QByteArray::number(number);
    qint64 rank = 0;
    qint64 prefix = 0;
    for (qsizetype at = 0; at < digits.size(); ++at) {
        const int digit = digits[at] - '0';
        for (int smaller = at == 0 ? 1 : 0; smaller < digit; ++smaller)
            rank += numbersUnder(n, prefix * 10 + smaller);
        prefix = prefix * 10 + digit;
        if (at + 1 < digits.size())
            ++rank;
    }
    return rank;
}

} // namespace

BodyListModel::BodyListModel(const QString& dbFile, QObject* parent)
    : QAbstractTableModel(parent), file(dbFile.toLocal8Bit())
{
    count = std::max(ZEB_BodyCount(file.constData()), 0);
}

int BodyListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : shown;
}

int BodyListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 2;
}

QVariant BodyListModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole || !index.isValid())
        return {};
    const int body = bodyAt(first + index.row());
    return index.column() == 0 ? QString::number(body) : description(body);
}

QVariant BodyListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    // A first click on a header sorts upwards, as a user reads a list.
    if (role == Qt::InitialSortOrderRole && orientation == Qt::Horizontal)
        return Qt::AscendingOrder;
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    return section == 0 ? "Index" : "Body Info";
}

int BodyListModel::rowOf(int body) const
{
    if (!rowsByBody.empty())
        return rowsByBody[std::size_t(body)];
    const qint64 rank = rankInTextOrder(count, body);
    return int(indexOrder == Qt::AscendingOrder ? rank : count - 1 - rank);
}

int BodyListModel::bodyAt(int row) const
{
    if (!byDescription.empty())
        return byDescription[std::size_t(row)];
    return kthInTextOrder(count, indexOrder == Qt::AscendingOrder ? row : count - 1 - row);
}

QString BodyListModel::description(int body) const
{
    if (const QString* known = descriptions.object(body))
        return *known;
    // The buffer is the library's to fill; a library that forgot the
    // terminator still gives a string.
    char info[1024];
    info[0] = '\0';
    ZEB_GetBodyInfo(file.constData(), body, info);
    info[sizeof info - 1] = '\0';
    auto* text = new QString(QString::fromLocal8Bit(info));
    descriptions.insert(body, text);
    return *text;
}

// The highlight follows its body, not its row number; it goes when its body
// leaves the window.
template <typename Change> void BodyListModel::keepingBodies(Change change)
{
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<int> bodies;
    for (const QModelIndex& index : before)
        bodies.push_back(bodyAt(first + index.row()));
    change();
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i) {
        const int row = rowOf(bodies[std::size_t(i)]) - first;
        after << (row >= 0 && row < shown ? index(row, before[i].column()) : QModelIndex());
    }
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}

void BodyListModel::showRows(int from, int rows)
{
    from = std::clamp(from, 0, count);
    rows = std::clamp(rows, 0, count - from);
    if (from == first && rows == shown)
        return;
    if (rows != shown) {
        // A row more or less: the view learns the count only from a reset.
        beginResetModel();
        first = from;
        shown = rows;
        endResetModel();
        return;
    }
    keepingBodies([&] { first = from; });
}

void BodyListModel::sort(int column, Qt::SortOrder order)
{
    keepingBodies([&] {
        byDescription.clear();
        rowsByBody.clear();
        indexOrder = order;
        if (column == 1 && count <= descriptionSortLimit)
            sortByDescription(order);
    });
}

void BodyListModel::sortByDescription(Qt::SortOrder order)
{
    std::vector<QString> texts(std::size_t(count) + 1);
    // Equal descriptions stay in the index's text order.
    for (int row = 0; row < count; ++row) {
        const int body = kthInTextOrder(count, row);
        byDescription.push_back(body);
        texts[std::size_t(body)] = description(body);
    }
    QCollator collator;
    std::stable_sort(byDescription.begin(), byDescription.end(), [&](int a, int b) {
        const int c = collator.compare(texts[std::size_t(a)], texts[std::size_t(b)]);
        return order == Qt::AscendingOrder ? c < 0 : c > 0;
    });
    rowsByBody.resize(std::size_t(count) + 1);
    for (int row = 0; row < count; ++row)
        rowsByBody[std::size_t(byDescription[std::size_t(row)])] = row;
}
