#include "qmlistdialog.h"

#include "dialogheading.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QBoxLayout>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>
#include <QTextBlock>
#include <QTextEdit>
#include <QTextLayout>

namespace
{

// Lines as the box shows them, wrapped ones counted one by one.
int shownLines(QTextEdit* edit)
{
    QTextDocument* document = edit->document();
    document->setTextWidth(edit->width() - 2 * edit->frameWidth());
    document->documentLayout()->documentSize(); // lays the text out
    int lines = 0;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next())
        lines += block.layout() ? block.layout()->lineCount() : 1;
    return lines;
}

} // namespace

QMListDialog::QMListDialog(const QString& text, QWidget* parent, const char* /*name*/, bool modal,
                           Qt::WindowFlags f)
    : QDialog(parent, f)
{
    setObjectName("ListDialog");
    setModal(modal);

    const int fh = QFontMetrics(QApplication::font()).height();

    auto* layout = new QBoxLayout(QBoxLayout::TopToBottom, this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(-1);
    layout->addStretch(1);

    QLabel* label = addDialogHeading(layout, "Output Report Files Generated: ", this);

    auto* edit = new QTextEdit(this);
    edit->setObjectName("TextEdit");
    edit->setReadOnly(true);
    edit->setPlainText(text);
    edit->setFixedSize(350, 200);
    label->setBuddy(edit); // names the list for screen readers
    layout->addWidget(edit, 20, Qt::AlignHCenter);
    layout->addStretch(1);

    auto* closeButton = new QPushButton("Close", this);
    closeButton->setObjectName("ClosePB");
    closeButton->setFixedSize(closeButton->sizeHint());
    layout->addWidget(closeButton, 4, Qt::AlignHCenter);
    layout->addStretch(1);

    layout->activate();
    setWindowTitle("Information");
    resize(400, shownLines(edit) * fh + label->height() + closeButton->height() + 200);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::accept);
}

QMListDialog::~QMListDialog() = default;
