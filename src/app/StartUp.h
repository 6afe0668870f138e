#pragma once

#include <QStringList>

class QWidget;

// Starts the program in this process: splash, application information, main
// window. Returns the shown main window, or nullptr when this instance must
// end (another one runs). The caller runs the event loop.
QWidget* StartUp(const QStringList& commandLine);
