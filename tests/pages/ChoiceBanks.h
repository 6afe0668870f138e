#pragma once

// Task banks for the tests of the choice pages: real definitions and ions in
// their sections, everything else from syntheticBank.

#include "TestSupport.h"
#include "session/TaskBank.h"

#include <QList>
#include <QPair>
#include <QStringList>

using TextPair = QPair<QString, QString>;

// Term and definition; the first eight are basic entries.
inline QList<TextPair> sampleDefinitions() {
    return {
        {"Atom", "Kleinstes, chemisch nicht weiter teilbares Teilchen eines Elements."},
        {"Molekül", "Teilchen aus zwei oder mehr fest miteinander verbundenen Atomen."},
        {"Ion", "Elektrisch geladenes Atom oder geladene Atomgruppe."},
        {"Element", "Reinstoff, der sich chemisch nicht weiter zerlegen lässt."},
        {"Oxidation", "Teilreaktion, bei der ein Teilchen Elektronen abgibt."},
        {"Reduktion", "Teilreaktion, bei der ein Teilchen Elektronen aufnimmt."},
        {"Säure", "Stoff, dessen Teilchen Protonen (H^+) abgeben können."},
        {"Base", "Stoff, dessen Teilchen Protonen (H^+) aufnehmen können."},
        {"Katalysator", "Stoff, der eine Reaktion beschleunigt und dabei nicht verbraucht wird."},
        {"Isotop", "Atomart, die sich von anderen desselben Elements nur in der Neutronenzahl "
                   "unterscheidet."},
        {"Legierung", "Metallischer Werkstoff aus einem Metall und mindestens einem weiteren "
                      "Element."},
        {"Emulsion", "Gemisch aus zwei nicht mischbaren Flüssigkeiten."},
    };
}

// Ion name and charge line; the first six are basic entries.
inline QList<TextPair> sampleIons() {
    return {{"Natrium-Ion", "+1"}, {"Chlorid-Ion", "-1"},   {"Magnesium-Ion", "+2"},
            {"Oxid-Ion", "-2"},    {"Aluminium-Ion", "+3"}, {"Nitrid-Ion", "-3"},
            {"Sulfat-Ion", "-2"},  {"Ammonium-Ion", "+1"}};
}

// Replaces the records of the section titled title in lines.
inline void replaceSection(QStringList& lines, const QString& title, const QList<TextPair>& records,
                           int basic) {
    const qsizetype head = lines.indexOf(title);
    const qsizetype end = lines.indexOf(QStringLiteral("@"), head);
    QStringList body;
    for (int i = 0; i < records.size(); ++i) {
        if (i == basic)
            body << QStringLiteral(u"\u00E6\u00E6");
        body << records[i].first << records[i].second;
    }
    if (basic >= records.size())
        body << QStringLiteral(u"\u00E6\u00E6");
    lines = lines.mid(0, head + 2) + body + lines.mid(end);
}

inline TaskBank choiceBank(const QList<TextPair>& definitions, int definitionBasic,
                           const QList<TextPair>& ions, int ionBasic) {
    QStringList lines = syntheticBank(6, 2);
    replaceSection(lines, QStringLiteral("Definitionen"), definitions, definitionBasic);
    replaceSection(lines, QStringLiteral("Ionen"), ions, ionBasic);
    return TaskBank::fromText(LegacyText::decode(cp1252Lines(lines)));
}

inline TaskBank sampleBank() {
    return choiceBank(sampleDefinitions(), 8, sampleIons(), 6);
}

// Definitions with generated terms ("Begriff 1", ...), all basic.
inline TaskBank definitionBank(const QStringList& texts) {
    QList<TextPair> records;
    for (int i = 0; i < texts.size(); ++i)
        records.append({QStringLiteral("Begriff %1").arg(i + 1), texts[i]});
    return choiceBank(records, int(records.size()), sampleIons(), 6);
}
