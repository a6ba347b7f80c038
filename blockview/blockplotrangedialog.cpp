#include "blockplotrangedialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>

#include <cmath>

namespace
{

bool numberIn(const QLineEdit* edit, double& value)
{
    bool ok = false;
    value = QLocale::c().toDouble(edit->text().trimmed(), &ok);
    return ok && std::isfinite(value);
}

} // namespace

BlockPlotRangeDialog::BlockPlotRangeDialog(const QString& xTitle, BlockPlotRange::Span x,
                                           const QString& yTitle, BlockPlotRange::Span y, bool log,
                                           QWidget* parent)
    : QDialog(parent), logY(log),
      buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel))
{
    setWindowTitle("Axis Ranges");
    setObjectName("axis ranges dialog");
    auto* form = new QFormLayout(this);
    const QString titles[2] = {xTitle, yTitle};
    const BlockPlotRange::Span spans[2] = {x, y};
    for (int axis = 0; axis < 2; ++axis) {
        auto* row = new QHBoxLayout;
        fields[2 * axis] = field(titles[axis] + " from", spans[axis].first);
        fields[2 * axis + 1] = field(titles[axis] + " to", spans[axis].second);
        row->addWidget(fields[2 * axis]);
        auto* to = new QLabel("to");
        to->setBuddy(fields[2 * axis + 1]);
        row->addWidget(to);
        row->addWidget(fields[2 * axis + 1]);
        auto* label = new QLabel(QString("%1 (%2):").arg(titles[axis], axis ? "up" : "across"));
        label->setBuddy(fields[2 * axis]);
        form->addRow(label, row);
    }
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    check();
}

QLineEdit* BlockPlotRangeDialog::field(const QString& name, double value)
{
    auto* edit = new QLineEdit(QString::number(value, 'g', 8));
    edit->setObjectName(name);
    edit->setAccessibleName(name);
    connect(edit, &QLineEdit::textChanged, this, &BlockPlotRangeDialog::check);
    return edit;
}

void BlockPlotRangeDialog::check()
{
    double v[4];
    bool ok = true;
    for (int i = 0; i < 4; ++i)
        ok = numberIn(fields[i], v[i]) && ok;
    ok = ok && v[0] < v[1] && v[2] < v[3] && (!logY || v[2] > 0);
    buttons->button(QDialogButtonBox::Ok)->setEnabled(ok);
}

BlockPlotRange::Span BlockPlotRangeDialog::x() const
{
    double from = 0, to = 0;
    numberIn(fields[0], from), numberIn(fields[1], to);
    return {from, to};
}

BlockPlotRange::Span BlockPlotRangeDialog::y() const
{
    double from = 0, to = 0;
    numberIn(fields[2], from), numberIn(fields[3], to);
    return {from, to};
}
