#pragma once

#include <QAbstractTableModel>
#include <QByteArray>
#include <QCache>
#include <QString>

#include <vector>

// The bodies of an HX DB file as a two-column table, index and description,
// made row by row as the view asks: nothing is kept per body, and a
// description is read from the library only when its row is shown. The
// table holds only the rows in sight, a window onto the whole list moved
// by showRows(), so that a view keeps nothing per body either: a header of
// 150 million sections would take gigabytes and overflow its pixel count.
//
// The index column sorts as text ("10" ahead of "2") in either order, worked
// out from the row number alone. Sorting by description reads every
// description, so it is done only up to descriptionSortLimit bodies; above
// that the list keeps the index order. Equal descriptions keep the index's
// text order. A sort, or a move of the window, keeps persistent indexes (the
// view's selection and current row) on their bodies while they stay in it.
class BodyListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr int descriptionSortLimit = 100000;

    BodyListModel(const QString& dbFile, QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

    int bodyCount() const { return count; }
    // The window: rows from first of the whole list, at most so many.
    void showRows(int first, int rows);
    int firstShown() const { return first; }

    // The body in a row of the whole list (not the window), 1 to the
    // count; and the inverse.
    int bodyAt(int row) const;
    int rowOf(int body) const;

private:
    QString description(int body) const;
    void sortByDescription(Qt::SortOrder order);
    template <typename Change> void keepingBodies(Change change);

    QByteArray file;
    int count = 0;
    int first = 0;
    int shown = 0;
    Qt::SortOrder indexOrder = Qt::AscendingOrder;
    // Bodies by row once sorted by description, and rows by body (from
    // 1); both empty in index order.
    std::vector<int> byDescription;
    std::vector<int> rowsByBody;
    mutable QCache<int, QString> descriptions{4096};
};
