#include "filerow.h"

#include "app_qmfilelineedit.h"
#include "bodyindexfield.h"

#include <QApplication>
#include <QBoxLayout>
#include <QLabel>
#include <QWidget>

namespace filerow
{

QBoxLayout* tabLayout(QWidget* tab)
{
    auto* layout = new QBoxLayout(QBoxLayout::TopToBottom, tab);
    layout->setContentsMargins(frameMargins());
    layout->setSpacing(-1);
    layout->addStretch(1);
    return layout;
}

QFont boldFont()
{
    const QFont font = QApplication::font();
    return QFont(font.family(), font.pointSize(), QFont::Bold, false);
}

QLabel* label(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setFont(boldFont());
    label->setAlignment(Qt::AlignCenter);
    label->setFixedSize(label->sizeHint());
    return label;
}

void nameAfter(QWidget* control, QLabel* label)
{
    QString name = label->text().trimmed();
    if (name.endsWith(':'))
        name.chop(1);
    control->setAccessibleName(name.trimmed().replace("&&", "&"));
    if (!label->toolTip().isEmpty())
        control->setAccessibleDescription(label->toolTip());
    // A buddy makes '&' a mnemonic: doubled, it still shows as one.
    if (label->text().contains('&') && !label->text().contains("&&"))
        label->setText(label->text().replace('&', "&&"));
    label->setBuddy(control);
}

QMFileLineEdit* addFileField(QBoxLayout* row, QWidget* tab, const QString& text, const char* name)
{
    QLabel* title = label(text, tab);
    row->addWidget(title, 10);
    auto* field = new QMFileLineEdit(tab, name, QMFileLineEdit::FileMode);
    field->setFixedSize(200, 25);
    title->setBuddy(field); // names the field for screen readers
    row->addWidget(field, 10);
    return field;
}

QMFileLineEdit* addZebField(QBoxLayout* row, QWidget* tab, const QString& text, const char* name)
{
    QMFileLineEdit* field = addFileField(row, tab, text, name);
    field->filters = QStringList{"ZEB files (*.zeb)", "HX DB files (*.MASTER)"};
    return field;
}

BodyIndexField* addIndexField(QBoxLayout* row, QWidget* tab, QLineEdit* fileField)
{
    QLabel* title = label("Index: ", tab);
    row->addWidget(title, 10);
    auto* field = new BodyIndexField(tab, fileField);
    title->setBuddy(field->lineEdit());
    row->addWidget(field->lineEdit(), 10);
    QObject::connect(fileField, &QLineEdit::textChanged, field, &BodyIndexField::checkCDB);
    return field;
}

} // namespace filerow
