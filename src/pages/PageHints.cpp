#include "pages/PageHints.h"

#include "chem/MistakeHints.h"

namespace {

using Kind = MistakeHints::Kind;

Kind kindOf(int page, int item) {
    switch (page) {
    case 1:
        return item < 3 ? Kind::ElementSymbol : Kind::ElementName;
    case 2:
        return item < 2 ? Kind::SyllableNumber : Kind::NumberSyllable;
    case 5:
        return Kind::IonCharge;
    case 8:
        return Kind::MolarMass;
    case 9:
        return Kind::Equation;
    case 11:
        return item < 3 ? Kind::Formula : Kind::SubstanceName;
    case 12:
        return Kind::Amount;
    default:
        return Kind::Choice;
    }
}

} // namespace

void PageHints::fill(PageRecord& record, const ElementTable& elements) {
    for (int i = 0; i < record.items.size(); ++i) {
        AnswerItem& item = record.items[i];
        if (item.right)
            continue;
        item.hint = MistakeHints::diagnose(kindOf(record.page, i), item.prompt, item.expected,
                                           item.given, elements)
                        .text;
    }
}
