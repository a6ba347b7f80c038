#include "pictures.h"

#include <QIcon>
#include <QPushButton>

#include "run_button.xpm"
#include "script_button.xpm"

namespace pictures
{

QPixmap runButton()
{
    return QPixmap(run_button_xpm);
}

QPixmap scriptButton()
{
    return QPixmap(script_button_xpm);
}

QPushButton* runPushButton(QWidget* parent, const QString& toolTip)
{
    auto* button = new QPushButton(parent);
    button->setIcon(QIcon(runButton()));
    button->setIconSize(QSize(32, 32));
    button->setFixedSize(40, 40);
    button->setToolTip(toolTip);
    return button;
}

} // namespace pictures
