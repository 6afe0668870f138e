#include "session/BankChecker.h"

#include "aids/ElementTable.h"
#include "session/ChemicalFormula.h"
#include "session/LegacyText.h"
#include "session/TextLines.h"
#include "session/TextRules.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMap>
#include <QSet>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace {

using Section = TaskBank::Section;
using Severity = BankChecker::Severity;
using Finding = BankChecker::Finding;

const QString kMark = QStringLiteral(u"\u00E6\u00E6");

// A line quoted in a note; a damaged file may hold very long lines.
QString shown(QStringView text) {
    constexpr qsizetype kMax = 60;
    if (text.size() <= kMax)
        return text.toString();
    return text.left(kMax).toString() + QStringLiteral("...");
}

QString sectionLabel(int s) {
    return QStringLiteral("Abschnitt %1 (%2)").arg(s + 1).arg(TaskBank::sectionName(Section(s)));
}

// What each line of a record holds, for notes such as "Das Symbol ist leer".
QString fieldName(Section s, int k) {
    static const char16_t* const names[TaskBank::SectionCount][3] = {
        {u"Die Namenszeile", u"Das Symbol", nullptr},
        {u"Die Zahl", u"Die Zahlsilbenzeile", nullptr},
        {u"Der Name", u"Die molare Masse", u"Die Formel"},
        {u"Der Fachbegriff", u"Die Erklärung", nullptr},
        {u"Der Name des Ions", u"Die Ladung", nullptr},
        {u"Die Aussage", u"Die Angabe J/N", nullptr},
        {u"Die Gleichung", nullptr, nullptr},
        {u"Die Formelzeile", u"Die Ionenzeile", u"Der Name"},
        {u"Die Frage", u"Die Antwort", nullptr}};
    const char16_t* name = names[s][k];
    return name ? QString::fromUtf16(name) : QString();
}

QString hundredthsText(qint64 h) {
    return QStringLiteral("%1.%2").arg(h / 100).arg(h % 100, 2, 10, QLatin1Char('0'));
}

QString tenthsText(qint64 t) {
    return QStringLiteral("%1.%2").arg(t / 10).arg(t % 10);
}

QString numberText(double v) {
    return QString::number(v, 'g', 7);
}

QString chargeText(int charge) {
    return charge > 0 ? QStringLiteral("+%1").arg(charge) : QString::number(charge);
}

class Run {
public:
    Run(QStringView text, const QString& file, const ElementTable* elements)
        : m_file(file), m_elements(elements), m_bank(TaskBank::fromText(text)) {
        TextLines walker(text);
        QStringView line;
        while (walker.next(line))
            m_lines.append(line);
    }

    void checkAll() {
        checkLayout();
        for (int s = 0; s < TaskBank::SectionCount; ++s) {
            if (m_bank.layout[s].headerEndLine > 0)
                checkRecords(Section(s));
        }
    }

    QString summary(int errors, int warnings) const {
        QStringList perSection;
        int entries = 0;
        int sections = 0;
        for (int s = 0; s < TaskBank::SectionCount; ++s) {
            const auto section = Section(s);
            perSection << QStringLiteral("%1/%2")
                              .arg(m_bank.basicCount(section))
                              .arg(m_bank.count(section));
            entries += m_bank.count(section);
            if (m_bank.layout[s].headerEndLine > 0)
                ++sections;
        }
        QString verdict;
        if (errors == 0)
            verdict = QStringLiteral("keine Fehler");
        else
            verdict = QStringLiteral("%1 Fehler").arg(errors);
        if (warnings > 0)
            verdict += QStringLiteral(", %1 %2").arg(warnings).arg(
                warnings == 1 ? QStringLiteral("Warnung") : QStringLiteral("Warnungen"));
        return QStringLiteral("%1: %2 Abschnitte, %3 Einträge (normal/alle je Abschnitt: %4), %5.")
            .arg(m_file)
            .arg(sections)
            .arg(entries)
            .arg(perSection.join(QStringLiteral(", ")), verdict);
    }

    QList<Finding> findings;

private:
    void note(int line, Severity severity, const QString& text) {
        findings.append({m_file, line, severity, text});
    }
    void error(int line, const QString& text) { note(line, Severity::Error, text); }
    void warning(int line, const QString& text) { note(line, Severity::Warning, text); }

    int lineCount() const { return static_cast<int>(m_lines.size()); }
    QStringView at(int n) const {
        return n >= 1 && n <= lineCount() ? m_lines.at(n - 1) : QStringView();
    }

    // ---- the layout of the sections --------------------------------------

    void checkLayout() {
        const int last = lineCount();
        if (last == 0) {
            error(0, QStringLiteral("Die Datei ist leer."));
            return;
        }
        for (int s = 0; s < TaskBank::SectionCount; ++s) {
            const SectionLayout& lay = m_bank.layout[s];
            checkHeader(s);
            if (lay.headerEndLine == 0) {
                error(last, QStringLiteral("Die Datei endet, bevor der %1 mit einer Zeile \"#\" "
                                           "beginnt; sie hat nur %2 von 9 Abschnitten.")
                                .arg(sectionLabel(s))
                                .arg(s));
                return;
            }
            if (lay.endLine == 0) {
                if (lay.truncatedAtLine > 0)
                    error(lay.truncatedAtLine,
                          QStringLiteral("Der Datensatz ab hier ist unvollständig: die Datei endet "
                                         "nach %1 seiner %2 Zeilen.")
                              .arg(last - lay.truncatedAtLine + 1)
                              .arg(TaskBank::linesPerRecord(Section(s))));
                QString missing;
                if (s + 1 < TaskBank::SectionCount)
                    missing = s + 2 < TaskBank::SectionCount
                                  ? QStringLiteral("; die Abschnitte %1 bis 9 fehlen").arg(s + 2)
                                  : QStringLiteral("; der Abschnitt 9 fehlt");
                error(last, QStringLiteral("Der %1 hat keine Zeile \"@\"; die Datei endet mitten "
                                           "im Abschnitt%2.")
                                .arg(sectionLabel(s), missing));
                return;
            }
            checkLevelMarks(s);
        }
        const int end = m_bank.layout[TaskBank::SectionCount - 1].endLine;
        for (int l = end + 1; l <= last; ++l) {
            if (!TrimBlanks(at(l)).isEmpty()) {
                warning(l, QStringLiteral("Nach dem neunten \"@\" (Zeile %1) steht noch Text; das "
                                          "Programm liest ihn nie.")
                               .arg(end));
                break;
            }
        }
    }

    // Header lines are free text; only a "#" spoilt by blanks is worth a word,
    // because the teacher surely meant it to end the header.
    void checkHeader(int s) {
        if (s > 0 && m_bank.layout[s - 1].endLine == 0)
            return;
        const int from = s == 0 ? 1 : m_bank.layout[s - 1].endLine + 1;
        const int headerEnd = m_bank.layout[s].headerEndLine;
        const int to = headerEnd > 0 ? headerEnd - 1 : lineCount();
        for (int l = from; l <= to; ++l) {
            if (at(l) != u"#" && TrimBlanks(at(l)) == u"#")
                warning(l,
                        QStringLiteral("Die Zeile \"%1\" enthält Leerzeichen und beendet deshalb "
                                       "den Kopf von %2 nicht; das tut nur eine Zeile, die "
                                       "genau \"#\" lautet.")
                            .arg(at(l).toString(), sectionLabel(s)));
        }
    }

    void checkLevelMarks(int s) {
        const SectionLayout& lay = m_bank.layout[s];
        const auto section = Section(s);
        if (lay.levelMarkLines.isEmpty()) {
            if (section == TaskBank::AmountSubstancesSection)
                warning(lay.endLine,
                        QStringLiteral("Der %1 hat keine Zeile \"ææ\"; diese Seite nutzt zwar alle "
                                       "Einträge, aber jeder Abschnitt sollte sie haben.")
                            .arg(sectionLabel(s)));
            else
                error(lay.headerEndLine,
                      QStringLiteral("Der %1 hat keine Zeile \"ææ\"; die normale Stufe hat dann "
                                     "nichts zum Ziehen.")
                          .arg(sectionLabel(s)));
            return;
        }
        for (qsizetype k = 1; k < lay.levelMarkLines.size(); ++k)
            warning(lay.levelMarkLines.at(k),
                    QStringLiteral("Der %1 hat mehr als eine Zeile \"ææ\" (die erste in Zeile %2); "
                                   "es gilt die letzte, die normale Stufe umfasst %3 Einträge.")
                        .arg(sectionLabel(s))
                        .arg(lay.levelMarkLines.first())
                        .arg(m_bank.basicCount(section)));
    }

    // ---- records -----------------------------------------------------------

    void checkRecords(Section s) {
        const int per = TaskBank::linesPerRecord(s);
        const int n = m_bank.count(s);
        const int basic = m_bank.basicCount(s);
        QHash<QString, int> firstSeen;
        QSet<QString> basicKeys;
        QSet<QString> definitionTexts;
        m_symbolSeen.clear();
        for (int i = 1; i <= n; ++i) {
            const int first = m_bank.visit(s, [i](const auto& table) { return table.lineOf(i); });
            QStringList parts;
            bool doubtful = false;
            for (int k = 0; k < per; ++k) {
                parts << at(first + k).toString();
                doubtful = checkMarkerLine(s, first, k) || doubtful;
            }
            const QString key = parts.join(u'\n');
            const auto seen = firstSeen.constFind(key);
            const bool repeated = seen != firstSeen.cend();
            if (repeated)
                warning(first, QStringLiteral("Der Eintrag wiederholt den Eintrag ab Zeile %1.")
                                   .arg(seen.value()));
            else
                firstSeen.insert(key, first);
            if (i <= basic)
                basicKeys.insert(key);
            if (s == TaskBank::DefinitionsSection)
                definitionTexts.insert(
                    TrimRightBlanks(m_bank.Definitions[i].Definition).toString());
            if (!doubtful)
                checkFields(s, first, repeated);
        }
        checkCounts(s, static_cast<int>(basicKeys.size()), static_cast<int>(firstSeen.size()),
                    static_cast<int>(definitionTexts.size()));
    }

    // A marker line read as data means a line is missing or one too many
    // somewhere before; every record after it is then shifted.
    bool checkMarkerLine(Section s, int first, int k) {
        const QStringView line = at(first + k);
        const bool exactMarker = line == u"@" || line == kMark || line == u"#";
        if (k > 0 && exactMarker) {
            error(first + k,
                  QStringLiteral("Die Zeile \"%1\" wird als Zeile %2 des Datensatzes ab Zeile %3 "
                                 "gelesen (%4); vermutlich fehlt davor eine Zeile "
                                 "(Aufbaufehler).")
                      .arg(line.toString())
                      .arg(k + 1)
                      .arg(first)
                      .arg(fieldName(s, k)));
            return true;
        }
        if (k == 0 && line == u"#") {
            error(first, QStringLiteral("Die Zeile \"#\" beginnt hier einen Datensatz von %1; "
                                        "vermutlich fehlt davor die Zeile \"@\", die den "
                                        "Abschnitt beendet (Aufbaufehler).")
                             .arg(sectionLabel(s)));
            return true;
        }
        const QStringView trimmed = TrimBlanks(line);
        if (!exactMarker && (trimmed == u"@" || trimmed == kMark || trimmed == u"#")) {
            error(first + k,
                  QStringLiteral("Die Zeile \"%1\" enthält Leerzeichen und zählt deshalb "
                                 "als Daten, nicht als Zeile \"%2\" (Aufbaufehler).")
                      .arg(line.toString(), trimmed.toString()));
            return true;
        }
        return false;
    }

    void checkFields(Section s, int first, bool repeated) {
        const int per = TaskBank::linesPerRecord(s);
        bool empty[3] = {false, false, false};
        for (int k = 0; k < per; ++k) {
            if (TrimBlanks(at(first + k)).isEmpty()) {
                empty[k] = true;
                error(first + k, QStringLiteral("%1 ist leer. Eine überzählige oder fehlende Zeile "
                                                "verschiebt auch alle folgenden Datensätze.")
                                     .arg(fieldName(s, k)));
            }
        }
        const QStringView l1 = at(first);
        const QStringView l2 = at(first + 1);
        const QStringView l3 = at(first + 2);
        switch (s) {
        case TaskBank::ElementNamesSection:
            if (!empty[0])
                checkAlternatives(first, l1, u"*", fieldName(s, 0));
            if (!empty[1])
                checkElementSymbol(first + 1, l1, l2, repeated);
            break;
        case TaskBank::NumberSyllablesSection:
            if (!empty[0])
                readWholeNumber(first, l1, fieldName(s, 0));
            if (!empty[1])
                checkAlternatives(first + 1, l2, u"*", fieldName(s, 1));
            break;
        case TaskBank::MolarMassSubstancesSection: {
            if (!empty[0])
                checkWidth(first, l1, TaskBank::kMolarMassNameWidth, fieldName(s, 0));
            std::optional<double> mass;
            if (!empty[1])
                mass = readNumber(first + 1, l2, fieldName(s, 1));
            if (!empty[2])
                checkMolarMass(first + 1, first + 2, mass, l3);
            break;
        }
        case TaskBank::DefinitionsSection:
            if (!empty[0])
                checkWidth(first, l1, TaskBank::kTermWidth, fieldName(s, 0));
            if (!empty[1])
                checkWidth(first + 1, l2, TaskBank::kDefinitionWidth, fieldName(s, 1));
            break;
        case TaskBank::IonChargesSection:
            if (!empty[0])
                checkWidth(first, l1, TaskBank::kIonNameWidth, fieldName(s, 0));
            if (!empty[1]) {
                const std::optional<int> charge = readWholeNumber(first + 1, l2, fieldName(s, 1));
                if (charge && (*charge < -3 || *charge > 3))
                    error(first + 1, QStringLiteral("Die Ladung %1 liegt nicht zwischen -3 und +3.")
                                         .arg(*charge));
                else if (charge && *charge == 0)
                    warning(first + 1,
                            QStringLiteral("Die Ladung ist 0; ein Ion ist aber geladen."));
            }
            break;
        case TaskBank::StatementsSection:
            if (!empty[0])
                checkWidth(first, l1, TaskBank::kStatementWidth, fieldName(s, 0));
            if (!empty[1])
                checkFlag(first + 1, l2);
            break;
        case TaskBank::EquationsSection:
            if (!empty[0])
                checkEquation(first, l1);
            break;
        case TaskBank::SubstancesSection:
            checkSubstance(first, empty[0] ? QStringView() : l1, empty[1] ? QStringView() : l2);
            if (!empty[0])
                checkAlternatives(first, l1, u"*", fieldName(s, 0));
            if (!empty[1])
                checkAlternatives(first + 1, l2, u"*", fieldName(s, 1));
            if (!empty[2])
                checkAlternatives(first + 2, l3, u"|", fieldName(s, 2));
            break;
        case TaskBank::AmountSubstancesSection:
            if (!empty[1])
                readNumber(first + 1, l2, fieldName(s, 1));
            break;
        default:
            break;
        }
    }

    void checkCounts(Section s, int basicDistinct, int allDistinct, int definitionTexts) {
        const SectionLayout& lay = m_bank.layout[s];
        if (lay.endLine == 0)
            return; // the file ended inside the section; that note says enough
        const int need = BankChecker::minimumEntries(s);
        const QString page = TaskBank::sectionTitle(s);
        if (allDistinct < need) {
            error(lay.endLine,
                  QStringLiteral("Der %1 hat nur %2 verschiedene Einträge; die Seite \"%3\" "
                                 "braucht mindestens %4, in jeder Stufe.")
                      .arg(sectionLabel(s))
                      .arg(allDistinct)
                      .arg(page)
                      .arg(need));
        } else if (s != TaskBank::AmountSubstancesSection && !lay.levelMarkLines.isEmpty() &&
                   basicDistinct < need) {
            error(lay.levelMarkLines.last(),
                  QStringLiteral("Vor dem \"ææ\" stehen nur %1 verschiedene Einträge; die Seite "
                                 "\"%2\" braucht in der normalen Stufe mindestens %3.")
                      .arg(basicDistinct)
                      .arg(page)
                      .arg(need));
        }
        if (s == TaskBank::DefinitionsSection &&
            definitionTexts < BankChecker::kMinimumDefinitionTexts)
            error(lay.endLine,
                  QStringLiteral("Der %1 hat nur %2 verschiedene Erklärungen; die Seite zeigt zu "
                                 "vier gezogenen Begriffen sechs weitere Erklärungen und braucht "
                                 "daher mindestens %3.")
                      .arg(sectionLabel(s))
                      .arg(definitionTexts)
                      .arg(BankChecker::kMinimumDefinitionTexts));
    }

    // ---- single fields -----------------------------------------------------

    void checkWidth(int line, QStringView text, int width, const QString& what) {
        const QStringView kept = TrimRightBlanks(text);
        if (kept.size() <= width)
            return;
        error(line, QStringLiteral("%1 ist %2 Zeichen lang; das Programm nimmt nur die ersten %3 "
                                   "und schneidet \"%4\" ab.")
                        .arg(what)
                        .arg(kept.size())
                        .arg(width)
                        .arg(shown(kept.mid(width))));
    }

    void checkAlternatives(int line, QStringView text, QStringView separator, const QString& what) {
        const TermList list = TermList::Build(text, separator);
        for (const QString& item : list.items()) {
            if (item.isEmpty()) {
                warning(line, QStringLiteral("%1 enthält eine leere Schreibweise (\"%2\" doppelt "
                                             "oder am Rand).")
                                  .arg(what, separator.toString()));
                return;
            }
        }
    }

    // The value when the whole line reads as a number, as the reader takes it.
    std::optional<double> readNumber(int line, QStringView text, const QString& what) {
        const QStringView t = TrimBlanks(text);
        const LeadingNumber r = ReadLeadingNumber(t);
        if (!r.found) {
            error(line, QStringLiteral("%1 \"%2\" ist keine Zahl; das Programm liest 0.")
                            .arg(what, shown(t)));
            return std::nullopt;
        }
        if (r.used != t.size()) {
            error(line, QStringLiteral("%1 \"%2\" liest sich nicht ganz als Zahl: das Programm "
                                       "liest nur \"%3\", also %4 (Dezimalzeichen ist der Punkt).")
                            .arg(what, shown(t), shown(t.left(r.used)), numberText(r.value)));
            return std::nullopt;
        }
        if (!std::isfinite(r.value) || std::fabs(r.value) > 3.4e38) {
            error(
                line,
                QStringLiteral("%1 \"%2\" ist zu groß; das Programm liest 0.").arg(what, shown(t)));
            return std::nullopt;
        }
        return r.value;
    }

    std::optional<int> readWholeNumber(int line, QStringView text, const QString& what) {
        const std::optional<double> v = readNumber(line, text, what);
        if (!v)
            return std::nullopt;
        bool overflow = false;
        const std::int16_t read = ReadInt16Field(text, &overflow);
        if (overflow) {
            error(line, QStringLiteral("%1 %2 liegt außerhalb von -32768 bis 32767; das Programm "
                                       "liest 0.")
                            .arg(what, numberText(*v)));
            return std::nullopt;
        }
        if (*v != std::floor(*v)) {
            error(line, QStringLiteral("%1 %2 ist keine ganze Zahl; das Programm liest %3.")
                            .arg(what, numberText(*v))
                            .arg(read));
            return std::nullopt;
        }
        return read;
    }

    void checkFlag(int line, QStringView text) {
        const QString flag = TrimBlanks(text).toString().toUpper();
        if (flag == u"J" || flag == u"N")
            return;
        error(line, QStringLiteral("Die Angabe \"%1\" ist weder J noch N; das Programm liest sie "
                                   "als N (die Aussage gilt als falsch).")
                        .arg(shown(text)));
    }

    // ---- chemistry ----------------------------------------------------------

    std::optional<ChemicalFormula> readFormula(int line, QStringView text, const QString& what) {
        ChemicalFormula f = ChemicalFormula::parse(text);
        if (!f.isValid()) {
            error(line, QStringLiteral("%1 \"%2\" lässt sich nicht lesen: %3")
                            .arg(what, shown(text), f.error()));
            return std::nullopt;
        }
        return f;
    }

    bool knownSymbols(int line, const ChemicalFormula& f) {
        if (!m_elements)
            return true;
        bool all = true;
        for (const QString& symbol : f.symbols()) {
            if (!m_elements->find(symbol)) {
                error(line, QStringLiteral("Das Element \"%1\" in \"%2\" steht nicht in "
                                           "elements.dat.")
                                .arg(symbol, shown(f.text())));
                all = false;
            }
        }
        return all;
    }

    void checkElementSymbol(int line, QStringView names, QStringView symbolLine, bool repeated) {
        const QString symbol = TrimRightBlanks(symbolLine).toString();
        if (!repeated) {
            const auto seen = m_symbolSeen.constFind(symbol);
            if (seen != m_symbolSeen.cend())
                warning(line,
                        QStringLiteral("Das Symbol %1 steht schon in Zeile %2; die Seite kann "
                                       "dasselbe Element zweimal zeigen.")
                            .arg(shown(symbol))
                            .arg(seen.value()));
            else
                m_symbolSeen.insert(symbol, line);
        }
        if (!m_elements)
            return;
        const ElementTable::Element* e = m_elements->find(symbol);
        if (!e) {
            error(line, QStringLiteral("Das Symbol \"%1\" steht nicht in elements.dat.")
                            .arg(shown(symbolLine)));
            return;
        }
        const QStringList accepted = TermList::Build(names, u"*").items();
        for (const QString& name : accepted) {
            if (QString::compare(TrimBlanks(name), e->name, Qt::CaseInsensitive) == 0)
                return;
        }
        warning(line - 1, QStringLiteral("Keiner der Namen \"%1\" ist der Name \"%2\", den "
                                         "elements.dat für %3 nennt.")
                              .arg(shown(names), e->name, e->symbol));
    }

    void checkMolarMass(int massLine, int formulaLine, std::optional<double> stored,
                        QStringView formulaText) {
        const std::optional<ChemicalFormula> f =
            readFormula(formulaLine, formulaText, QStringLiteral("Die Formel"));
        if (!f)
            return;
        if (f->hasCharge())
            warning(formulaLine, QStringLiteral("Die Formel \"%1\" trägt eine Ladung; die molare "
                                                "Masse gilt für den ungeladenen Stoff.")
                                     .arg(shown(formulaText)));
        if (!m_elements)
            return;
        // Exact sums in hundredths: the two-decimal masses of elements.dat
        // are exact there, and a sum such as 74.55 must round up, which
        // binary floating point gets wrong.
        qint64 sum = 0;
        bool complete = true;
        for (auto it = f->counts().cbegin(); it != f->counts().cend(); ++it) {
            const ElementTable::Element* e = m_elements->find(it.key());
            if (!e) {
                error(formulaLine, QStringLiteral("Das Element \"%1\" in \"%2\" steht nicht in "
                                                  "elements.dat.")
                                       .arg(it.key(), shown(formulaText)));
                complete = false;
            } else if (e->massNumberOnly) {
                error(formulaLine, QStringLiteral("Für %1 nennt elements.dat nur die Massenzahl "
                                                  "[%2]; die molare Masse von \"%3\" lässt sich "
                                                  "damit nicht berechnen.")
                                       .arg(e->symbol)
                                       .arg(e->massHundredths / 100)
                                       .arg(shown(formulaText)));
                complete = false;
            } else if (!e->hasMass()) {
                error(formulaLine,
                      QStringLiteral("Für %1 hat elements.dat keine lesbare Atommasse.")
                          .arg(e->symbol));
                complete = false;
            } else {
                sum += qint64(it.value()) * e->massHundredths;
            }
        }
        if (!complete || !stored)
            return;
        const qint64 tenths = (sum + 5) / 10;
        if (std::fabs(*stored * 10.0 - double(tenths)) > 1e-6)
            error(massLine, QStringLiteral("Die molare Masse %1 passt nicht zur Formel %2 "
                                           "(berechnet: %3 g/mol, gerundet %4).")
                                .arg(shown(TrimBlanks(at(massLine))), shown(formulaText),
                                     hundredthsText(sum), tenthsText(tenths)));
    }

    struct Member {
        qint64 coefficient = 1;
        ChemicalFormula formula;
    };

    void checkEquation(int line, QStringView text) {
        const QList<QStringView> sides = text.split(u'=');
        if (sides.size() != 2) {
            error(line, QStringLiteral("Die Gleichung \"%1\" braucht genau ein \"=\" zwischen "
                                       "zwei Seiten.")
                            .arg(shown(text)));
            return;
        }
        QList<Member> members[2];
        bool readable = true;
        for (int k = 0; k < 2; ++k) {
            const QString which = k == 0 ? QStringLiteral("linke") : QStringLiteral("rechte");
            const QStringView side = sides[k];
            if (!side.startsWith(u'@')) {
                error(line, QStringLiteral("Die %1 Seite \"%2\" beginnt nicht mit \"@\"; jeder "
                                           "Stoff wird als @, Koeffizient und Formel "
                                           "geschrieben, z. B. @2H2O.")
                                .arg(which, shown(side)));
                readable = false;
                continue;
            }
            const QList<QStringView> parts = side.mid(1).split(u'@');
            for (qsizetype p = 0; p < parts.size(); ++p) {
                QStringView part = parts[p];
                if (p + 1 < parts.size()) {
                    if (!part.endsWith(u'+')) {
                        error(line, QStringLiteral("Nach \"%1\" fehlt das \"+\" vor dem nächsten "
                                                   "\"@\".")
                                        .arg(shown(part)));
                        readable = false;
                        continue;
                    }
                    part.chop(1);
                }
                if (part.isEmpty()) {
                    error(line, QStringLiteral("Nach einem \"@\" der %1 Seite fehlt der Stoff.")
                                    .arg(which));
                    readable = false;
                    continue;
                }
                qsizetype digits = 0;
                while (digits < part.size() && part.at(digits) >= u'0' && part.at(digits) <= u'9')
                    ++digits;
                if (digits == 0) {
                    error(line, QStringLiteral("Vor der Formel \"%1\" fehlt der Koeffizient (auch "
                                               "1 wird geschrieben, z. B. @1O2).")
                                    .arg(shown(part)));
                    readable = false;
                    continue;
                }
                if (part.at(0) == u'0' || digits > 4) {
                    error(line, QStringLiteral("Der Koeffizient \"%1\" ist keine positive ganze "
                                               "Zahl bis 9999.")
                                    .arg(shown(part.left(digits))));
                    readable = false;
                    continue;
                }
                const std::optional<ChemicalFormula> f =
                    readFormula(line, part.mid(digits), QStringLiteral("Die Formel"));
                if (!f) {
                    readable = false;
                    continue;
                }
                if (f->hasCharge()) {
                    error(line, QStringLiteral("\"%1\" trägt eine Ladung; Gleichungen enthalten "
                                               "nur ungeladene Teilchen.")
                                    .arg(shown(f->text())));
                    readable = false;
                }
                knownSymbols(line, *f);
                members[k].append({part.left(digits).toLongLong(), *f});
            }
            if (members[k].size() > 2)
                error(line, QStringLiteral("Die %1 Seite hat %2 Stoffe; höchstens zwei passen "
                                           "auf eine Seite.")
                                .arg(which)
                                .arg(members[k].size()));
        }
        if (!readable)
            return;

        QMap<QString, qint64> atoms[2];
        qint64 divisor = 0;
        for (int k = 0; k < 2; ++k) {
            for (const Member& sp : members[k]) {
                divisor = std::gcd(divisor, sp.coefficient);
                for (auto it = sp.formula.counts().cbegin(); it != sp.formula.counts().cend(); ++it)
                    atoms[k][it.key()] += sp.coefficient * it.value();
            }
        }
        if (atoms[0] != atoms[1]) {
            QSet<QString> symbols;
            for (int k = 0; k < 2; ++k) {
                for (auto it = atoms[k].cbegin(); it != atoms[k].cend(); ++it)
                    symbols.insert(it.key());
            }
            QStringList sorted(symbols.cbegin(), symbols.cend());
            std::sort(sorted.begin(), sorted.end());
            QStringList differences;
            for (const QString& symbol : sorted) {
                const qint64 left = atoms[0].value(symbol);
                const qint64 right = atoms[1].value(symbol);
                if (left != right)
                    differences << QStringLiteral("%1 links %2, rechts %3")
                                       .arg(symbol)
                                       .arg(left)
                                       .arg(right);
            }
            error(line, QStringLiteral("Die Gleichung ist nicht ausgeglichen: %1.")
                            .arg(differences.join(QStringLiteral("; "))));
            return;
        }
        if (divisor > 1)
            error(line, QStringLiteral("Alle Koeffizienten lassen sich durch %1 teilen; verlangt "
                                       "sind die kleinsten ganzen Zahlen.")
                            .arg(divisor));
    }

    void checkSubstance(int first, QStringView formulaLine, QStringView ionLine) {
        std::optional<ChemicalFormula> reference;
        for (QStringView item : formulaLine.split(u'*')) {
            if (item.isEmpty())
                continue; // noted with the alternatives
            const std::optional<ChemicalFormula> f =
                readFormula(first, item, QStringLiteral("Die Formel"));
            if (!f)
                continue;
            if (f->hasCharge())
                error(first, QStringLiteral("Die Formel \"%1\" trägt eine Ladung; in die erste "
                                            "Zeile gehört der Stoff ohne Ladung, die Ionen stehen "
                                            "in der zweiten.")
                                 .arg(shown(item)));
            knownSymbols(first, *f);
            if (!reference)
                reference = f;
            else if (f->counts() != reference->counts())
                error(first, QStringLiteral("Die Formeln \"%1\" und \"%2\" haben nicht dieselbe "
                                            "Zusammensetzung.")
                                 .arg(shown(reference->text()), shown(item)));
        }
        const int ionsAt = first + 1;
        QList<ChemicalFormula> ions;
        bool ionsReadable = true;
        for (QStringView item : ionLine.split(u'*')) {
            if (item.isEmpty())
                continue;
            const std::optional<ChemicalFormula> f =
                readFormula(ionsAt, item, QStringLiteral("Das Ion"));
            if (!f) {
                ionsReadable = false;
                continue;
            }
            if (!f->hasCharge()) {
                error(ionsAt, QStringLiteral("\"%1\" hat keine Ladung; ein Ion wird z. B. als "
                                             "Na^+ oder SO4^2- geschrieben.")
                                  .arg(shown(item)));
                ionsReadable = false;
            }
            knownSymbols(ionsAt, *f);
            ions.append(*f);
        }
        if (reference && !reference->hasCharge() && ionsReadable && !ions.isEmpty())
            matchIons(ionsAt, *reference, ions);
    }

    // The ions, each taken 1 to kMaxIonMultiplier times, must give the
    // formula's atoms with a total charge of 0, and in exactly one way.
    void matchIons(int line, const ChemicalFormula& formula, const QList<ChemicalFormula>& ions) {
        QStringList ionTexts;
        for (const ChemicalFormula& ion : ions)
            ionTexts << ion.text();
        const QString ionList = shown(ionTexts.join(QStringLiteral(", ")));
        if (ions.size() > BankChecker::kMaxIonsPerSubstance) {
            error(line, QStringLiteral("Die Zeile nennt %1 Ionen; geprüft werden Stoffe aus "
                                       "höchstens %2 Ionensorten.")
                            .arg(ions.size())
                            .arg(BankChecker::kMaxIonsPerSubstance));
            return;
        }
        QStringList symbols = formula.counts().keys();
        QStringList notInFormula;
        for (const ChemicalFormula& ion : ions) {
            for (const QString& symbol : ion.counts().keys()) {
                if (!formula.counts().contains(symbol) && !notInFormula.contains(symbol))
                    notInFormula << symbol;
            }
        }
        QStringList notInIons;
        for (const QString& symbol : symbols) {
            const bool found = std::any_of(ions.cbegin(), ions.cend(), [&](const auto& ion) {
                return ion.counts().contains(symbol);
            });
            if (!found)
                notInIons << symbol;
        }
        if (!notInFormula.isEmpty() || !notInIons.isEmpty()) {
            QStringList why;
            if (!notInFormula.isEmpty())
                why << QStringLiteral("%1 kommt in der Formel nicht vor")
                           .arg(notInFormula.join(QStringLiteral(", ")));
            if (!notInIons.isEmpty())
                why << QStringLiteral("%1 fehlt in den Ionen")
                           .arg(notInIons.join(QStringLiteral(", ")));
            error(line, QStringLiteral("Die Ionen %1 passen nicht zu den Elementen der Formel %2: "
                                       "%3.")
                            .arg(ionList, shown(formula.text()), why.join(QStringLiteral("; "))));
            return;
        }

        const int kinds = static_cast<int>(ions.size());
        const int dims = static_cast<int>(symbols.size());
        QList<int> target(dims);
        QList<QList<int>> ionAtoms(kinds, QList<int>(dims));
        for (int d = 0; d < dims; ++d) {
            target[d] = formula.counts().value(symbols[d]);
            for (int k = 0; k < kinds; ++k)
                ionAtoms[k][d] = ions[k].counts().value(symbols[d]);
        }
        QList<int> multiplier(kinds, 1);
        int solutions = 0;
        std::optional<QList<int>> atomsOnly; // atoms right, charge not
        std::optional<int> atomsOnlyCharge;
        while (true) {
            bool atomsMatch = true;
            for (int d = 0; d < dims && atomsMatch; ++d) {
                qint64 sum = 0;
                for (int k = 0; k < kinds; ++k)
                    sum += qint64(multiplier[k]) * ionAtoms[k][d];
                atomsMatch = sum == target[d];
            }
            if (atomsMatch) {
                qint64 charge = 0;
                for (int k = 0; k < kinds; ++k)
                    charge += qint64(multiplier[k]) * ions[k].charge();
                if (charge == 0) {
                    ++solutions;
                } else if (!atomsOnly) {
                    atomsOnly = multiplier;
                    atomsOnlyCharge = static_cast<int>(charge);
                }
            }
            int k = 0;
            while (k < kinds && multiplier[k] == BankChecker::kMaxIonMultiplier)
                multiplier[k++] = 1;
            if (k == kinds)
                break;
            ++multiplier[k];
        }
        if (solutions == 1)
            return;
        if (solutions > 1) {
            warning(line, QStringLiteral("Die Ionen %1 ergeben die Formel %2 auf mehrere Arten; "
                                         "steht ein Ion doppelt?")
                              .arg(ionList, shown(formula.text())));
            return;
        }
        if (atomsOnly) {
            QStringList terms;
            for (int k = 0; k < kinds; ++k)
                terms << QStringLiteral("%1 × %2").arg((*atomsOnly)[k]).arg(ions[k].text());
            error(line, QStringLiteral("Die Ladungen heben sich nicht auf: %1 ergibt die Formel %2 "
                                       "mit der Ladung %3.")
                            .arg(shown(terms.join(QStringLiteral(" + "))), shown(formula.text()),
                                 chargeText(*atomsOnlyCharge)));
            return;
        }
        error(line, QStringLiteral("Aus den Ionen %1 lässt sich die Formel %2 nicht "
                                   "zusammensetzen (geprüft: je 1 bis %3 Ionen jeder Sorte).")
                        .arg(ionList, shown(formula.text()))
                        .arg(BankChecker::kMaxIonMultiplier));
    }

    QString m_file;
    const ElementTable* m_elements;
    TaskBank m_bank;
    QList<QStringView> m_lines;
    QHash<QString, int> m_symbolSeen;
};

BankChecker::Report finish(Run& run, QList<Finding> leading) {
    BankChecker::Report report;
    report.findings = std::move(leading);
    report.findings.append(run.findings);
    report.summary = run.summary(report.errorCount(), report.warningCount());
    return report;
}

} // namespace

QString BankChecker::Finding::toString() const {
    QString out = file;
    if (line > 0)
        out += u':' + QString::number(line);
    out += QStringLiteral(": ");
    if (severity == Severity::Warning)
        out += QStringLiteral("Warnung: ");
    return out + text;
}

int BankChecker::Report::errorCount() const {
    return static_cast<int>(std::count_if(findings.cbegin(), findings.cend(), [](const auto& f) {
        return f.severity == Severity::Error;
    }));
}

int BankChecker::Report::warningCount() const {
    return static_cast<int>(findings.size()) - errorCount();
}

QStringList BankChecker::Report::lines() const {
    QStringList out;
    for (const Finding& f : findings)
        out << f.toString();
    out << summary;
    return out;
}

int BankChecker::minimumEntries(TaskBank::Section section) {
    switch (section) {
    case TaskBank::ElementNamesSection:
    case TaskBank::StatementsSection:
    case TaskBank::SubstancesSection:
        return 6;
    case TaskBank::EquationsSection:
    case TaskBank::AmountSubstancesSection:
        return 5;
    default:
        return 4;
    }
}

BankChecker::Report BankChecker::check(QStringView text, const QString& bankName,
                                       const ElementTable* elements) {
    Run run(text, bankName, elements);
    run.checkAll();
    return finish(run, {});
}

BankChecker::Report BankChecker::checkFiles(const QString& bankPath, const QString& elementsPath) {
    QFile file(bankPath);
    if (!file.open(QIODevice::ReadOnly)) {
        Report report;
        report.findings.append(
            {bankPath, 0, Severity::Error,
             QFileInfo::exists(bankPath)
                 ? QStringLiteral("Die Datei lässt sich nicht lesen (%1).").arg(file.errorString())
                 : QStringLiteral("Die Datei gibt es nicht.")});
        report.summary = QStringLiteral("%1: nicht geprüft.").arg(bankPath);
        return report;
    }
    const QString text = LegacyText::decode(file.readAll());

    QList<Finding> leading;
    std::optional<ElementTable> elements;
    const QString elementsName =
        elementsPath.isEmpty() ? QStringLiteral("elements.dat") : elementsPath;
    if (!elementsPath.isEmpty() && QFileInfo(elementsPath).isFile())
        elements = ElementTable::load(elementsPath);
    if (!elements || !elements->fileRead()) {
        leading.append({elementsName, 0, Severity::Warning,
                        QStringLiteral("Die Elementtabelle fehlt oder lässt sich nicht lesen; die "
                                       "Prüfungen gegen sie (Symbole, molare Massen, Gleichungen, "
                                       "Ionen) entfallen.")});
        elements.reset();
    } else {
        for (const ElementTable::Problem& p : elements->problems())
            leading.append({elementsName, p.line, Severity::Error, p.text});
        if (elements->count() == 0) {
            leading.append({elementsName, 0, Severity::Error,
                            QStringLiteral("Die Elementtabelle enthält kein lesbares Element; die "
                                           "Prüfungen gegen sie entfallen.")});
            elements.reset();
        }
    }
    Run run(text, bankPath, elements ? &*elements : nullptr);
    run.checkAll();
    return finish(run, std::move(leading));
}
