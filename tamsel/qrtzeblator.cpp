#include "qrtzeblator.h"

#include "app_qmfilelineedit.h"
#include "filerow.h"
#include "messagebox.h"
#include "pictures.h"
#include "qrtzebcore.h"
#include "runcommand.h"
#include "translatorcommand.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <cstdlib>

QRTZEBLator::QRTZEBLator(QWidget* parent, const char* name) : QWidget(parent)
{
    setObjectName(QString::fromLatin1(name));

    QBoxLayout* layout = filerow::tabLayout(this);
    auto* inputRow = new QBoxLayout(QBoxLayout::LeftToRight);
    layout->addLayout(inputRow, 4);

    inputRow->addStretch(1);
    inputFile = filerow::addFileField(inputRow, this, "QRT Input File:", "input");
    inputFile->filter = "All QRT files (*.out)";
    inputRow->addStretch(10);

    translatePB = pictures::runPushButton(this, "Begin Translatiion");
    translatePB->setAccessibleName("Begin Translation"); // spoken as meant
    inputRow->addWidget(translatePB, 10, Qt::AlignCenter);
    inputRow->addStretch(1);

    layout->addStretch(1);
    core = new QRTZEBCore(this, "QRTZEBLator_Core");
    layout->addWidget(core, 20);
    layout->addStretch(1);

    connect(translatePB, &QPushButton::clicked, this, &QRTZEBLator::translate);
    layout->activate();
}

void QRTZEBLator::selected()
{
    translatePB->setDefault(true);
}

void QRTZEBLator::translate()
{
    // The options go into the environment even when a later check fails.
    if (!core->putOptions())
        return;

    const QString input = inputFile->text();
    if (input.isEmpty()) {
        MessageBox::warn("Missing Input File", "Please supply an input QRT file.");
        return;
    }
    TranslatorCommand command("OKT_QRT2ZEB");
    if (command.file(input).refused())
        return;
    if (runCommand(command.line(), "Translating QRT to ZEB ..."))
        MessageBox::warn("Translation Problems",
                         "Translating QRT to ZEB problems.\nCheck your environment, permissions.");
}
