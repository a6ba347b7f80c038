#include "zebzebopt.h"

#include "app_qmfilelineedit.h"
#include "bodyindexfield.h"
#include "filerow.h"
#include "messagebox.h"
#include "pictures.h"
#include "qrtzebcore.h"
#include "runcommand.h"
#include "translatorcommand.h"

#include <QBoxLayout>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>

#include <cstdlib>

// The extension is taken from the name as given; only a ZEB name comes back
// stripped.
QString fixOutputName(const QString& name)
{
    const QString extension = name.section('.', -1, -1).trimmed().toLower();
    if (extension == "master")
        return name.section('.', 0, -2) + ".MASTER";
    if (extension != "zeb")
        return name + ".zeb";
    return name.trimmed();
}

ZEBZEBOpt::ZEBZEBOpt(QWidget* parent, const char* name) : QWidget(parent)
{
    setObjectName(QString::fromLatin1(name));

    QBoxLayout* mainLayout = filerow::tabLayout(this);
    mainLayout->addLayout(createFileRow(), 4);
    mainLayout->addStretch(1);
    core = new QRTZEBCore(this, "QRTZEBLator_Core");
    mainLayout->addWidget(core, 20);
    mainLayout->addStretch(1);

    connect(optimizePB, &QPushButton::clicked, this, &ZEBZEBOpt::optimize);
    mainLayout->activate();
}

QBoxLayout* ZEBZEBOpt::createFileRow()
{
    auto* row = new QBoxLayout(QBoxLayout::LeftToRight);
    row->addStretch(1);
    inputFile = filerow::addZebField(row, this, "ZEB or HX DB Input File: ", "inputFile");
    row->addStretch(10);

    bodyIndex = filerow::addIndexField(row, this, inputFile);
    indexLE = bodyIndex->lineEdit();
    indexMenu = bodyIndex->menu();
    row->addStretch(10);
    row->addStretch(1);

    output = filerow::addZebField(row, this, "ZEB or HX DB Output File:", "output");
    row->addStretch(1);

    optimizePB = pictures::runPushButton(this, "Begin Optimization");
    row->addWidget(optimizePB, 2, Qt::AlignCenter);
    row->addStretch(1);
    return row;
}

void ZEBZEBOpt::selected()
{
    optimizePB->setDefault(true);
}

void ZEBZEBOpt::checkCDB()
{
    bodyIndex->checkCDB();
}

void ZEBZEBOpt::selectIndexFromCDB()
{
    bodyIndex->selectIndexFromCDB();
}

bool ZEBZEBOpt::eventFilter(QObject* watched, QEvent* event)
{
    return bodyIndex->filterEvent(watched, event) || QWidget::eventFilter(watched, event);
}

// Input before output, unlike the matrix tab. Nothing is written before the
// user has confirmed both the overwrite and the command.
void ZEBZEBOpt::optimize()
{
    // The options stay in the environment whatever follows.
    if (!core->putOptions())
        return;

    if (inputFile->text().isEmpty()) {
        MessageBox::warn("Missing Input File", "Please provide an input ZEB or HX DB file.");
        return;
    }
    if (!bodyIndex->checkIndex())
        return;
    const QString operand = bodyIndex->inputOperand();
    const QString typedOutput = output->text().trimmed();
    if (typedOutput.isEmpty()) {
        MessageBox::warn("Missing Output File", "Please provide an output ZEB or HX DB file.");
        return;
    }
    const QString finalOutput = fixOutputName(typedOutput);
    if (!outputMayBeWritten(finalOutput))
        return;
    TranslatorCommand command("OKT_ZEB2MTX");
    if (command.file(operand).text(" -L -O").file(finalOutput).refused())
        return;
    if (MessageBox::information(nullptr, "info", command.line(), "OK", "Cancel", "", 0, 1) != 0)
        return;
    if (runCommand(command.line(), "Optimizing ZEB to ZEB ..."))
        MessageBox::warn("Translation Problems",
                         "Translating ZEB to MTX problems.\nCheck your environment, permissions.");
}

bool ZEBZEBOpt::outputMayBeWritten(const QString& name)
{
    // A dangling link is a name taken too: exists() follows links.
    if (!QFileInfo::exists(name) && !QFileInfo(name).isSymLink())
        return true;
    const QString question = tr("A file called %1 already exists.\n Do you want to overwrite it?");
    return MessageBox::information(this, "Tamsel", question.arg(name), "&Yes", "No", "", 1, -1) ==
           0;
}
