#pragma once

#include <QTableView>

class BlockTableModel;
class BlockText;
struct BlockLayout;

// The table view of a block page: rows made on demand, a click on a title
// sorts, Ctrl+C copies the selection as tab-separated text, and the
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
    // Asks for a file name, writes, warns when that fails.
    void exportCsvAs();

    // Every row, also those the view has not asked for yet.
    void selectAll() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void fitSections();

    BlockTableModel* cells;
};
