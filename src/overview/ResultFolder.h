#pragma once

#include "result/ResultRecord.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <atomic>
#include <optional>

// Reads every result file of a folder for the teacher's overview. The folder
// is whatever students and programs left there, so nothing in it is trusted:
// temporary files (leading ".") and foreign files are passed over; a file that
// is not a whole, consistent result (cut off, not JSON, another version, over
// 1 MiB, sums that do not add up), a FIFO, a device, a link that leads
// nowhere or a file that vanishes while it is read is skipped and named with
// the reason. Nothing blocks on a FIFO, and nothing in the folder is changed.
class ResultFolder final {
public:
    struct Skipped {
        QString file;
        QString why; // German, the end of a sentence
    };
    struct Reading {
        QString folder;
        // Empty when the folder could be listed; otherwise a whole German
        // sentence that says why not (a drop box students may only write
        // into is such a folder for everybody but its owner).
        QString problem;
        QList<ResultRecord> records; // in the order of their file names
        QStringList files;           // the name of each record's file, within the folder
        QList<Skipped> skipped;
        int seen = 0; // result files found, read or skipped
        bool cancelled = false;
    };
    // Shared with the thread that reads: how far it got, and a way to stop it.
    struct Progress {
        std::atomic<int> total{0};
        std::atomic<int> done{0};
        std::atomic<bool> cancel{false};
    };

    // The names of the result files in the folder, sorted; *problem is set
    // (and nothing returned) when the folder cannot be listed.
    static QStringList list(const QString& folder, QString* problem);
    // One file, read without following it into a FIFO or device and without
    // taking more than a result file can hold.
    static std::optional<ResultRecord> readFile(const QString& path, QString* why);
    // Lists and reads the whole folder, on all cores.
    static Reading read(const QString& folder, Progress* progress = nullptr);
};
