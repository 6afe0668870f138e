// Fuzz entry: labquiz.dat as a teacher's editor may leave it, read by the
// program's reader and then checked by "labquiz --check" against the
// shipped element table.
#include "checker/BankChecker.h"
#include "chem/ElementTable.h"
#include "chem/LegacyText.h"
#include "session/TaskBank.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ElementTable elements =
        ElementTable::load(QStringLiteral(LABQUIZ_SOURCE_DATA_DIR "/elements.dat"));
    if (elements.count() == 0)
        std::abort(); // the fuzzer would test nothing of the chemistry
    const QString text =
        LegacyText::decode(QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)));

    const TaskBank bank = TaskBank::fromText(text);
    for (int s = 0; s < TaskBank::SectionCount; ++s) {
        const auto section = TaskBank::Section(s);
        // What the pages rely on: the basic part never exceeds the table.
        if (bank.basicCount(section) < 0 || bank.basicCount(section) > bank.count(section))
            std::abort();
    }
    const BankChecker::Report report =
        BankChecker::check(text, QStringLiteral("fuzz.dat"), &elements);
    if (report.summary.isEmpty())
        std::abort();
    return 0;
}
