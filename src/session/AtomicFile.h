#pragma once

#include <QByteArray>
#include <QString>

// Replaces a file as a whole: the new content goes to a temporary file
// beside it, which takes the old one's place only once it is complete. A
// crash, a kill or a full disk on the way leaves the old file as it was.
class AtomicFile final {
public:
    // False when the file could not be replaced; *problem then says why, in
    // German, as the end of a sentence ("der Datenordner … ist
    // schreibgeschützt").
    static bool write(const QString& path, const QByteArray& bytes, QString* problem = nullptr);

    // Removes the temporary files that writes of path left behind when the
    // program was killed between writing one and putting it in place. Only
    // for a program that knows no other one writes there.
    static void removeLeftovers(const QString& path);

    // Why path cannot be written, judged from the folder, the file and the
    // free space; writeError is the system's reason in German, if known.
    static QString whyNotWritable(const QString& path, const QString& writeError);
    // The system's reason for a failed call (an errno), in German; empty for
    // reasons that tell a teacher nothing.
    static QString reasonOf(int error);
};
