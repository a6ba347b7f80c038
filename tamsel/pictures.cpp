#include "pictures.h"

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

} // namespace pictures
