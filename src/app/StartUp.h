#pragma once

#include <QStringList>

class QWidget;

// Starts the program in this process: splash, application information, main
// window. Returns the shown main window, or nullptr when this instance must
// end (another one runs). The caller runs the event loop.
QWidget* StartUp(const QStringList& commandLine);

// Opens the teacher's overview ("labquiz --auswertung [ORDNER] [--von …]
// [--bis …]") in this process instead of the test. Returns the shown
// window, or nullptr with *error (German) when the words are wrong.
QWidget* StartOverview(const QStringList& commandLine, QString* error);
