#pragma once

#include "session/TermList.h"

#include <QList>
#include <QString>
#include <QStringView>
#include <array>
#include <cstdint>
#include <optional>
#include <utility>

// One table of the task bank: records numbered from 1 (slot 0 exists and
// stays empty), plus the basic count that the normal level draws from.
template <typename Record> class BankTable final {
public:
    BankTable() { clear(); }

    void clear() {
        m_records.clear();
        m_records.resize(1);
        m_lines.clear();
        m_lines.resize(1);
        basicCount = 0;
    }
    int count() const { return static_cast<int>(m_records.size()) - 1; }
    const Record& operator[](int index) const { return m_records.at(index); }
    Record& operator[](int index) { return m_records[index]; }
    // Line of labquiz.dat where record index begins (for the checker's notes).
    int lineOf(int index) const { return m_lines.at(index); }
    void append(Record record, int firstLine) {
        m_records.append(std::move(record));
        m_lines.append(firstLine);
    }
    void reserve(int n) {
        m_records.reserve(n + 1);
        m_lines.reserve(n + 1);
    }

    int basicCount = 0;

private:
    QList<Record> m_records;
    QList<int> m_lines;
};

struct ElementNameRecord {
    TermList Name;
    QString Symbol;
};
struct NumberSyllableRecord {
    std::int16_t Number = 0;
    TermList Syllable;
};
struct MolarMassRecord {
    QString Name; // 40 characters
    float MolarMass = 0.0f;
    QString Formula;
};
struct DefinitionRecord {
    QString Definition; // 120 characters
    QString Term;       // 20 characters
};
struct IonChargeRecord {
    QString Name; // 20 characters
    std::int16_t Charge = 0;
};
struct StatementRecord {
    bool IsTrue = false;
    QString Statement; // 120 characters
};
struct EquationRecord {
    QString Equation;
};
struct SubstanceRecord {
    // The leading term is only created when a test starts; the reader leaves
    // it empty, exactly like a missing list of a hand-made record.
    std::optional<TermList> Lead;
    std::optional<TermList> Formula;
    std::optional<TermList> SecondTerm;
    QString Name;
};
struct AmountRecord {
    QString First;
    QString Second;
};

// How a section of the file was laid out; the checker turns this into notes
// with line numbers. Line numbers count from 1; 0 means "not found".
struct SectionLayout {
    int headerEndLine = 0;     // the "#" line
    QList<int> levelMarkLines; // every "ææ" line at a record boundary
    int endLine = 0;           // the "@" line
    int truncatedAtLine = 0;   // first line of a record that the file cut off
};

class TaskBank final {
public:
    enum Section {
        ElementNamesSection,
        NumberSyllablesSection,
        MolarMassSubstancesSection,
        DefinitionsSection,
        IonChargesSection,
        StatementsSection,
        EquationsSection,
        SubstancesSection,
        AmountSubstancesSection,
        SectionCount
    };

    BankTable<ElementNameRecord> ElementNames;
    BankTable<NumberSyllableRecord> NumberSyllables;
    BankTable<MolarMassRecord> MolarMassSubstances;
    BankTable<DefinitionRecord> Definitions;
    BankTable<IonChargeRecord> IonCharges;
    BankTable<StatementRecord> Statements;
    BankTable<EquationRecord> Equations;
    BankTable<SubstanceRecord> Substances;
    BankTable<AmountRecord> AmountSubstances;

    std::array<SectionLayout, SectionCount> layout;
    bool fileRead = false; // false when the file could not be opened
    // Why it was not read (German), e.g. a pipe or a file far too large.
    QString readProblem;
    int linesRead = 0;
    // SHA-256 of the file's bytes in hex, so that a result names the bank
    // it was drawn from; empty when the file was not read.
    QString sha256;

    // Reads labquiz.dat. Never fails: whatever could be read is there, the
    // rest stays empty, and reading stops at the end of the file.
    static TaskBank LoadTaskBank(const QString& path);
    static TaskBank fromText(QStringView text);

    int count(Section s) const;
    int basicCount(Section s) const;
    // Entries a page may draw from: the basic part at the normal level.
    int usableCount(Section s, bool expert) const { return expert ? count(s) : basicCount(s); }

    static int linesPerRecord(Section s);
    static QString sectionName(Section s);  // the table's name, e.g. "ElementNames"
    static QString sectionTitle(Section s); // German, for notices

    static constexpr int kMolarMassNameWidth = 40;
    static constexpr int kTermWidth = 20;
    static constexpr int kDefinitionWidth = 120;
    static constexpr int kIonNameWidth = 20;
    static constexpr int kStatementWidth = 120;

    // Cut to the width or pad with blanks on the right.
    static QString fixedWidth(QStringView line, int width);
    // True exactly for "J" after cutting blanks and upper-casing.
    static bool IsTrue(QStringView line);

    static const QString& levelMark(); // "ææ"

    // Calls f with the table of section s (const and non-const).
    template <typename F> auto visit(Section s, F&& f) const {
        return visitImpl(*this, s, std::forward<F>(f));
    }
    template <typename F> auto visit(Section s, F&& f) {
        return visitImpl(*this, s, std::forward<F>(f));
    }

private:
    template <typename Self, typename F> static auto visitImpl(Self& self, Section s, F&& f) {
        switch (s) {
        case NumberSyllablesSection:
            return f(self.NumberSyllables);
        case MolarMassSubstancesSection:
            return f(self.MolarMassSubstances);
        case DefinitionsSection:
            return f(self.Definitions);
        case IonChargesSection:
            return f(self.IonCharges);
        case StatementsSection:
            return f(self.Statements);
        case EquationsSection:
            return f(self.Equations);
        case SubstancesSection:
            return f(self.Substances);
        case AmountSubstancesSection:
            return f(self.AmountSubstances);
        case ElementNamesSection:
        default:
            return f(self.ElementNames);
        }
    }
};
