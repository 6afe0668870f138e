#pragma once

#include "checker/CheckFinding.h"
#include "session/TaskBank.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

class ElementTable;

// The teacher's check of an edited task bank ("labquiz --check"): reads the
// file with the program's own reader and notes, with line numbers, whatever
// would make a page misbehave or teach something wrong: a broken section
// layout, texts the reader would cut, number lines it would misread, too few
// entries for a page's draws, and chemistry that does not add up against
// elements.dat. It only collects notes; printing is the caller's part.
class BankChecker final {
public:
    using Severity = CheckSeverity;
    using Finding = CheckFinding;

    struct Report {
        QList<Finding> findings;
        QString summary;
        bool bankRead = true; // false: the bank file could not be opened

        int errorCount() const;
        int warningCount() const;
        // 0 without errors (warnings are advice), 1 with errors, 2 when the
        // bank could not be read at all.
        int exitCode() const { return !bankRead ? 2 : errorCount() > 0 ? 1 : 0; }
        QStringList lines() const; // the findings, then the summary
    };

    // Distinct entries a page draws from its section at one level.
    static int minimumEntries(TaskBank::Section section);
    // The definitions page shows four drawn terms with their definitions and
    // six further definitions that belong to none of them.
    static constexpr int kMinimumDefinitionTexts = 10;
    // Ion multipliers tried when a substance's ions are matched to its formula.
    static constexpr int kMaxIonMultiplier = 6;
    static constexpr int kMaxIonsPerSubstance = 5;

    // elements may be null; the checks against the periodic table are then
    // left out (the caller says why).
    static Report check(QStringView text, const QString& bankName, const ElementTable* elements);
    // Reads both files. A missing elements file is noted, and the checks
    // that need it are left out.
    static Report checkFiles(const QString& bankPath, const QString& elementsPath);
};
