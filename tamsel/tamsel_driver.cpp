#include "tamsel.h"

#include "platform/signals.h"

#include <QApplication>
#include <QStyleFactory>

int main(int argc, char** argv)
{
    platform::ignoreBrokenPipe(); // "tamsel | head" must not end it
    QApplication app(argc, argv);
    // Ties the windows to the installed desktop entry and its icon (the
    // Wayland app id, the task bar's grouping).
    QGuiApplication::setDesktopFileName("org.tamsel.Tamsel");
    QApplication::setStyle(QStyleFactory::create("Windows"));
    return Tamsel::runProgram();
}
