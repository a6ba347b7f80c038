#include "startoptions.h"
#include "tamsel.h"

#include "platform/files.h"
#include "platform/signals.h"

#include <QApplication>
#include <QStyleFactory>

int main(int argc, char** argv)
{
    // Before anything opens a file: the display's connection must not
    // become standard output.
    platform::guardStandardDescriptors();
    const int tried = startoptions::tryStandins(argc, argv);
    if (tried >= 0)
        return tried;
    platform::ignoreBrokenPipe(); // "tamsel | head" must not end it
    const int answered = startoptions::answerInformation(argc, argv);
    if (answered >= 0)
        return answered;
    const bool ownStyle = !startoptions::styleRequested(argc, argv);
    QApplication app(argc, argv);
    // Ties the windows to the installed desktop entry and its icon (the
    // Wayland app id, the task bar's grouping).
    QGuiApplication::setDesktopFileName("org.tamsel.Tamsel");
    if (ownStyle)
        QApplication::setStyle(QStyleFactory::create("Windows"));
    return Tamsel::runProgram();
}
