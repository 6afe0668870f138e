#pragma once

#include <QString>

class NamesFile;
class QWidget;

// What the pages keep about candidates and say to them: the list of earlier
// names with the remembered level, the session log a teacher reads, where
// results are handed in, and the program's notices. The application-information object provides it;
// pages and the result form see only this, so they need nothing of the start-up.
class CandidateRecords {
public:
    virtual ~CandidateRecords() = default;

    virtual NamesFile& names() = 0;
    virtual bool addName(const QString& name) = 0;
    virtual bool removeName(const QString& name) = 0;
    virtual void setDifficulty(int level) = 0;

    // Appends one line to the session log.
    virtual void log(const QString& line) = 0;
    virtual void logStart(const QString& record, const QString& name) = 0;

    virtual void message(QWidget* parent, const QString& text) const = 0;

    // Where a finished test is handed in, and the outbox in the personal
    // folder that keeps it while the results folder cannot be reached.
    struct ResultPlaces {
        QString results;
        QString outbox;
        QString machine;
    };
    virtual ResultPlaces resultPlaces() const = 0;
};
