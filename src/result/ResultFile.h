#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

struct ResultRecord;

// Hands a finished test in as a file of its own. Many students write into
// one results folder at once, often on a network share that gives no lock,
// often a drop box where they may create files but neither list nor read
// them. So a result is never appended to or written over anything: it gets
// a name of its own, is written whole under a hidden temporary name beside
// it, synced, and only then appears under its final name. Nothing here
// needs to read or list the folder.
class ResultFile final {
public:
    static constexpr int kMaxNameChars = 40;
    static constexpr const char* kSuffix = ".json";

    // "2026-11-24_10-41-37_Lena_Koehler_pc-07_4711.json": the finishing time,
    // the name and the machine reduced to safe characters, the process id.
    static QString fileName(const QDateTime& finished, const QString& candidate,
                            const QString& machine, qint64 pid);
    // Letters (umlauts and accents spelt in ASCII), digits, "-" and "_"
    // only, blanks as "_", at most maxChars; "unbenannt" when nothing is left.
    static QString safePart(const QString& text, int maxChars);

    // Creates folder/name with these bytes. Never replaces a file: when the
    // name is taken, "-2", "-3", … are tried before the suffix. Returns the
    // final path, or an empty text and *why (German, the end of a sentence).
    static QString writeNew(const QString& folder, const QString& name, const QByteArray& bytes,
                            QString* why = nullptr);

    struct HandIn {
        QString path;          // where the file went
        bool inOutbox = false; // the results folder could not take it
        QString why;           // why not, when inOutbox or nothing was written
    };
    // Writes the record into the results folder, or, when that fails, into
    // the outbox of the personal folder, to be delivered later.
    static HandIn handIn(const ResultRecord& record, const QString& resultsFolder,
                         const QString& outbox, qint64 pid);

    // Moves every result waiting in the outbox into the results folder, by
    // the same rules; what cannot be delivered stays. Returns how many wait.
    static int deliverOutbox(const QString& outbox, const QString& resultsFolder);

    // True for names the overview and the outbox ignore: temporary files
    // (leading ".") and anything that is not a result file.
    static bool isResultName(const QString& fileName);
};
