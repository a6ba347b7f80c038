#include "filerow.h"

#include "app_qmfilelineedit.h"
#include "bodyindexfield.h"

#include <QApplication>
#include <QBoxLayout>
#include <QLabel>

namespace filerow
{

namespace
{

QMFileLineEdit* zebField(QWidget* parent, const char* name)
{
    auto* field = new QMFileLineEdit(parent, name, QMFileLineEdit::FileMode);
    field->setFixedSize(200, 25);
    field->filters = QStringList{"ZEB files (*.zeb)", "HX DB files (*.MASTER)"};
    return field;
}

} // namespace

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

QMFileLineEdit* addZebField(QBoxLayout* row, QWidget* tab, const QString& text, const char* name)
{
    row->addWidget(label(text, tab), 10);
    QMFileLineEdit* field = zebField(tab, name);
    row->addWidget(field, 10);
    return field;
}

BodyIndexField* addIndexField(QBoxLayout* row, QWidget* tab, QLineEdit* fileField)
{
    row->addWidget(label("Index: ", tab), 10);
    auto* field = new BodyIndexField(tab, fileField);
    row->addWidget(field->lineEdit(), 10);
    QObject::connect(fileField, SIGNAL(textChanged(QString)), tab, SLOT(checkCDB()));
    return field;
}

} // namespace filerow
