#include "dialogheading.h"

#include <QApplication>
#include <QBoxLayout>
#include <QLabel>

QLabel* addDialogHeading(QBoxLayout* layout, const QString& text, QWidget* dialog)
{
    auto* label = new QLabel(text, dialog);
    label->setObjectName("ReportFileLabel");
    label->setFont(QFont(QApplication::font().family(), 12, QFont::Bold, false));
    label->setFixedSize(label->sizeHint());
    layout->addWidget(label, 4, Qt::AlignHCenter);
    layout->addStretch(1);
    return label;
}
