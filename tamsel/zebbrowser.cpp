#include "zebbrowser.h"

#include <QPushButton>

ZEBBrowser::ZEBBrowser(QWidget* parent, const char* name) : QWidget(parent)
{
    setObjectName(QString::fromLatin1(name));
    browseBtn = new QPushButton(this);
    browseBtn->setToolTip("Start the GUI Browser for the selected components");
}

void ZEBBrowser::selected()
{
    browseBtn->setDefault(true);
}
