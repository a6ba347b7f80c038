#include "pictures.h"

#include <QIcon>
#include <QPushButton>

#include "browse_button.xpm"
#include "report_button.xpm"
#include "run_button.xpm"
#include "script_button.xpm"
#include "tamsel_icon.xpm"

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

QPixmap browseButton()
{
    return QPixmap(browse_button_xpm);
}

QPixmap reportButton()
{
    return QPixmap(report_button_xpm);
}

QPixmap windowIcon()
{
    return QPixmap(tamsel_icon_xpm);
}

QPushButton* runPushButton(QWidget* parent, const QString& toolTip)
{
    return pictureButton(parent, runButton(), toolTip);
}

QPushButton* pictureButton(QWidget* parent, const QPixmap& picture, const QString& toolTip)
{
    auto* button = new QPushButton(parent);
    button->setIcon(QIcon(picture));
    button->setIconSize(QSize(32, 32));
    button->setFixedSize(40, 40);
    button->setToolTip(toolTip);
    // A button with only a picture is named by its tool tip.
    button->setAccessibleName(toolTip);
    return button;
}

} // namespace pictures
