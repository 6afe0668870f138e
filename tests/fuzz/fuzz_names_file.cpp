// Fuzz entry: names.ini as any editor or a broken disk may leave it. Whatever
// the reader makes of it must come back unchanged after the program has
// written it and read it again.
#include "chem/LegacyText.h"
#include "session/NamesFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text =
        LegacyText::decode(QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)));
    QStringList names;
    int difficulty = -1;
    QString folder;
    NamesFile::parse(text, &names, &difficulty, &folder);

    NamesFile written;
    for (const QString& name : names)
        written.addName(name);
    written.setDifficulty(difficulty);
    written.setOverviewFolder(folder);
    QStringList again;
    int difficultyAgain = -1;
    QString folderAgain;
    NamesFile::parse(LegacyText::decode(written.serialise().toUtf8()), &again, &difficultyAgain,
                     &folderAgain);
    if (again != names || folderAgain != folder)
        std::abort();
    // Only a level from 0 up is a remembered level; the rest is "none".
    if (difficultyAgain != (difficulty >= 0 ? difficulty : -1))
        std::abort();
    return 0;
}
