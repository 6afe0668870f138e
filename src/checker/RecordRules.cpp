#include "checker/RecordRules.h"

#include "checker/AmountRules.h"
#include "checker/BankChecker.h"
#include "checker/CheckContext.h"
#include "checker/ElementRules.h"
#include "checker/EquationRules.h"
#include "checker/FieldRules.h"
#include "checker/SubstanceRules.h"
#include "session/TextRules.h"

#include <QHash>
#include <QSet>
#include <QStringList>
#include <optional>

namespace {
const QString kMark = QStringLiteral(u"\u00E6\u00E6");
}

using Section = TaskBank::Section;

void RecordRules::checkRecords(CheckContext& ctx, Section s) {
    const int per = TaskBank::linesPerRecord(s);
    const int n = ctx.bank().count(s);
    const int basic = ctx.bank().basicCount(s);
    QHash<QString, int> firstSeen;
    QSet<QString> basicKeys;
    QSet<QString> definitionTexts;
    ctx.symbolSeen.clear();
    for (int i = 1; i <= n; ++i) {
        const int first = ctx.bank().visit(s, [i](const auto& table) { return table.lineOf(i); });
        QStringList parts;
        bool doubtful = false;
        for (int k = 0; k < per; ++k) {
            parts << ctx.at(first + k).toString();
            doubtful = RecordRules::checkMarkerLine(ctx, s, first, k) || doubtful;
        }
        const QString key = parts.join(u'\n');
        const auto seen = firstSeen.constFind(key);
        const bool repeated = seen != firstSeen.cend();
        if (repeated)
            ctx.warning(first, QStringLiteral("Der Eintrag wiederholt den Eintrag ab Zeile %1.")
                                   .arg(seen.value()));
        else
            firstSeen.insert(key, first);
        if (i <= basic)
            basicKeys.insert(key);
        if (s == TaskBank::DefinitionsSection)
            definitionTexts.insert(
                TrimRightBlanks(ctx.bank().Definitions[i].Definition).toString());
        if (!doubtful)
            RecordRules::checkFields(ctx, s, first, repeated);
    }
    RecordRules::checkCounts(ctx, s, static_cast<int>(basicKeys.size()),
                             static_cast<int>(firstSeen.size()),
                             static_cast<int>(definitionTexts.size()));
}

// A marker line read as data means a line is missing or one too many

// A marker line read as data means a line is missing or one too many
// somewhere before; every record after it is then shifted.
bool RecordRules::checkMarkerLine(CheckContext& ctx, Section s, int first, int k) {
    const QStringView line = ctx.at(first + k);
    const bool exactMarker = line == u"@" || line == kMark || line == u"#";
    if (k > 0 && exactMarker) {
        ctx.error(first + k,
                  QStringLiteral("Die Zeile \"%1\" wird als Zeile %2 des Datensatzes ab Zeile %3 "
                                 "gelesen (%4); vermutlich fehlt davor eine Zeile "
                                 "(Aufbaufehler).")
                      .arg(line.toString())
                      .arg(k + 1)
                      .arg(first)
                      .arg(CheckContext::fieldName(s, k)));
        return true;
    }
    if (k == 0 && line == u"#") {
        ctx.error(first, QStringLiteral("Die Zeile \"#\" beginnt hier einen Datensatz von %1; "
                                        "vermutlich fehlt davor die Zeile \"@\", die den "
                                        "Abschnitt beendet (Aufbaufehler).")
                             .arg(CheckContext::sectionLabel(s)));
        return true;
    }
    const QStringView trimmed = TrimBlanks(line);
    if (!exactMarker && (trimmed == u"@" || trimmed == kMark || trimmed == u"#")) {
        ctx.error(first + k,
                  QStringLiteral("Die Zeile \"%1\" enthält Leerzeichen und zählt deshalb "
                                 "als Daten, nicht als Zeile \"%2\" (Aufbaufehler).")
                      .arg(line.toString(), trimmed.toString()));
        return true;
    }
    return false;
}

void RecordRules::checkFields(CheckContext& ctx, Section s, int first, bool repeated) {
    const int per = TaskBank::linesPerRecord(s);
    bool empty[3] = {false, false, false};
    for (int k = 0; k < per; ++k) {
        if (TrimBlanks(ctx.at(first + k)).isEmpty()) {
            empty[k] = true;
            ctx.error(first + k, QStringLiteral("%1 ist leer. Eine überzählige oder fehlende Zeile "
                                                "verschiebt auch alle folgenden Datensätze.")
                                     .arg(CheckContext::fieldName(s, k)));
        }
    }
    const QStringView l1 = ctx.at(first);
    const QStringView l2 = ctx.at(first + 1);
    const QStringView l3 = ctx.at(first + 2);
    switch (s) {
    case TaskBank::ElementNamesSection:
        if (!empty[0])
            FieldRules::checkAlternatives(ctx, first, l1, u"*", CheckContext::fieldName(s, 0));
        if (!empty[1])
            ElementRules::checkElementSymbol(ctx, first + 1, l1, l2, repeated);
        break;
    case TaskBank::NumberSyllablesSection:
        if (!empty[0])
            FieldRules::readWholeNumber(ctx, first, l1, CheckContext::fieldName(s, 0));
        if (!empty[1])
            FieldRules::checkAlternatives(ctx, first + 1, l2, u"*", CheckContext::fieldName(s, 1));
        break;
    case TaskBank::MolarMassSubstancesSection: {
        if (!empty[0])
            FieldRules::checkWidth(ctx, first, l1, TaskBank::kMolarMassNameWidth,
                                   CheckContext::fieldName(s, 0));
        std::optional<double> mass;
        if (!empty[1])
            mass = FieldRules::readNumber(ctx, first + 1, l2, CheckContext::fieldName(s, 1));
        if (!empty[2])
            ElementRules::checkMolarMass(ctx, first + 1, first + 2, mass, l3);
        break;
    }
    case TaskBank::DefinitionsSection:
        if (!empty[0])
            FieldRules::checkWidth(ctx, first, l1, TaskBank::kTermWidth,
                                   CheckContext::fieldName(s, 0));
        if (!empty[1])
            FieldRules::checkWidth(ctx, first + 1, l2, TaskBank::kDefinitionWidth,
                                   CheckContext::fieldName(s, 1));
        break;
    case TaskBank::IonChargesSection:
        if (!empty[0])
            FieldRules::checkWidth(ctx, first, l1, TaskBank::kIonNameWidth,
                                   CheckContext::fieldName(s, 0));
        if (!empty[1]) {
            const std::optional<int> charge =
                FieldRules::readWholeNumber(ctx, first + 1, l2, CheckContext::fieldName(s, 1));
            if (charge && (*charge < -3 || *charge > 3))
                ctx.error(
                    first + 1,
                    QStringLiteral("Die Ladung %1 liegt nicht zwischen -3 und +3.").arg(*charge));
            else if (charge && *charge == 0)
                ctx.warning(first + 1,
                            QStringLiteral("Die Ladung ist 0; ein Ion ist aber geladen."));
        }
        break;
    case TaskBank::StatementsSection:
        if (!empty[0])
            FieldRules::checkWidth(ctx, first, l1, TaskBank::kStatementWidth,
                                   CheckContext::fieldName(s, 0));
        if (!empty[1])
            FieldRules::checkFlag(ctx, first + 1, l2);
        break;
    case TaskBank::EquationsSection:
        if (!empty[0])
            EquationRules::checkEquation(ctx, first, l1);
        break;
    case TaskBank::SubstancesSection:
        SubstanceRules::checkSubstance(ctx, first, empty[0] ? QStringView() : l1,
                                       empty[1] ? QStringView() : l2);
        if (!empty[0])
            FieldRules::checkAlternatives(ctx, first, l1, u"*", CheckContext::fieldName(s, 0));
        if (!empty[1])
            FieldRules::checkAlternatives(ctx, first + 1, l2, u"*", CheckContext::fieldName(s, 1));
        if (!empty[2])
            FieldRules::checkAlternatives(ctx, first + 2, l3, u"|", CheckContext::fieldName(s, 2));
        break;
    case TaskBank::AmountSubstancesSection:
        if (!empty[1])
            FieldRules::readNumber(ctx, first + 1, l2, CheckContext::fieldName(s, 1));
        if (!empty[0] && !empty[1])
            AmountRules::checkAmount(ctx, first, l1, l2);
        break;
    default:
        break;
    }
}

void RecordRules::checkCounts(CheckContext& ctx, Section s, int basicDistinct, int allDistinct,
                              int definitionTexts) {
    const SectionLayout& lay = ctx.bank().layout[s];
    if (lay.endLine == 0)
        return; // the file ended inside the section; that note says enough
    const int need = BankChecker::minimumEntries(s);
    const QString page = TaskBank::sectionTitle(s);
    if (allDistinct < need) {
        ctx.error(lay.endLine,
                  QStringLiteral("Der %1 hat nur %2 verschiedene Einträge; die Seite \"%3\" "
                                 "braucht mindestens %4, in jeder Stufe.")
                      .arg(CheckContext::sectionLabel(s))
                      .arg(allDistinct)
                      .arg(page)
                      .arg(need));
    } else if (s != TaskBank::AmountSubstancesSection && !lay.levelMarkLines.isEmpty() &&
               basicDistinct < need) {
        ctx.error(lay.levelMarkLines.last(),
                  QStringLiteral("Vor dem \"ææ\" stehen nur %1 verschiedene Einträge; die Seite "
                                 "\"%2\" braucht in der normalen Stufe mindestens %3.")
                      .arg(basicDistinct)
                      .arg(page)
                      .arg(need));
    }
    if (s == TaskBank::DefinitionsSection && definitionTexts < BankChecker::kMinimumDefinitionTexts)
        ctx.error(lay.endLine,
                  QStringLiteral("Der %1 hat nur %2 verschiedene Erklärungen; die Seite zeigt zu "
                                 "vier gezogenen Begriffen sechs weitere Erklärungen und braucht "
                                 "daher mindestens %3.")
                      .arg(CheckContext::sectionLabel(s))
                      .arg(definitionTexts)
                      .arg(BankChecker::kMinimumDefinitionTexts));
}