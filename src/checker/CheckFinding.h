#pragma once

#include <QString>

// One note of the task-bank check, with the place it is about.
enum class CheckSeverity { Error, Warning };

struct CheckFinding {
    QString file; // as the notes print it
    int line = 0; // 0: about the file as a whole
    CheckSeverity severity = CheckSeverity::Error;
    QString text; // German

    // "FILE:LINE: text", warnings marked with "Warnung: ".
    QString toString() const;
};
