#pragma once

#include "blockplotrange.h"

#include <QDialog>

class QDialogButtonBox;
class QLineEdit;

// Axis ranges typed in: from and to across and up, as numbers; OK only
// while each range is finite, runs upwards and, on a log axis, lies above 0.
class BlockPlotRangeDialog : public QDialog
{
    Q_OBJECT

public:
    BlockPlotRangeDialog(const QString& xTitle, BlockPlotRange::Span x, const QString& yTitle,
                         BlockPlotRange::Span y, bool logY, QWidget* parent = nullptr);

    BlockPlotRange::Span x() const;
    BlockPlotRange::Span y() const;

private:
    QLineEdit* field(const QString& name, double value);
    void check();

    bool logY;
    QLineEdit* fields[4]; // x from, x to, y from, y to
    QDialogButtonBox* buttons;
};
