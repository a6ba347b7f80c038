#include "zebzebopt.h"

#include "pictures.h"

#include <QPushButton>

ZEBZEBOpt::ZEBZEBOpt(QWidget* parent, const char* name) : QWidget(parent)
{
    setObjectName(QString::fromLatin1(name));
    optimizePB = pictures::runPushButton(this, "Begin Optimization");
    connect(optimizePB, &QPushButton::clicked, this, &ZEBZEBOpt::optimize);
}

void ZEBZEBOpt::selected()
{
    optimizePB->setDefault(true);
}

void ZEBZEBOpt::optimize() {}
