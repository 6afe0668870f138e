// Fuzz entry: elements.dat read into the element table, with what the
// program then asks of it (lookups, molar masses), and the code-page
// decoding that every data file goes through.
#include "chem/ChemicalFormula.h"
#include "chem/ElementTable.h"
#include "chem/LegacyText.h"
#include "chem/MolarMass.h"

#include <QSet>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    // Windows-1252 maps every byte to one character and back.
    if (LegacyText::encodeWindows1252(LegacyText::decodeWindows1252(bytes)) != bytes)
        std::abort();

    const ElementTable table = ElementTable::fromText(LegacyText::decode(bytes));
    QSet<int> linesWithProblems;
    for (const ElementTable::Problem& p : table.problems())
        linesWithProblems.insert(p.line);
    for (const ElementTable::Element& e : table.elements()) {
        if (table.find(e.symbol) != &e || table.byNumber(e.number) != &e)
            std::abort();
        // A place in the table, or none (0) and a note on that line.
        if (e.group < 0 || e.group > 18 || e.period < 0 || e.period > 7)
            std::abort();
        if ((e.group == 0 || e.period == 0) && !linesWithProblems.contains(e.line))
            std::abort();
    }
    for (const char* formula : {"H2O", "NaCl", "Ca3(PO4)2", "CuSO4·5H2O", "Xx9", "SO4^2-"})
        MolarMass::of(ChemicalFormula::parse(QString::fromUtf8(formula)), table);
    return 0;
}
