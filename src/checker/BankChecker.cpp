#include "checker/BankChecker.h"

#include "checker/CheckContext.h"
#include "checker/LayoutRules.h"
#include "checker/RecordRules.h"
#include "chem/ElementTable.h"
#include "chem/LegacyText.h"

#include <QFileInfo>
#include <algorithm>
#include <optional>

namespace {

using Section = TaskBank::Section;
using Severity = BankChecker::Severity;
using Finding = BankChecker::Finding;

QString summary(const CheckContext& ctx, int errors, int warnings) {
    QStringList perSection;
    int entries = 0;
    int sections = 0;
    for (int s = 0; s < TaskBank::SectionCount; ++s) {
        const auto section = Section(s);
        perSection << QStringLiteral("%1/%2")
                          .arg(ctx.bank().basicCount(section))
                          .arg(ctx.bank().count(section));
        entries += ctx.bank().count(section);
        if (ctx.bank().layout[s].headerEndLine > 0)
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
        .arg(ctx.file())
        .arg(sections)
        .arg(entries)
        .arg(perSection.join(QStringLiteral(", ")), verdict);
}

void runRules(CheckContext& ctx) {
    LayoutRules::checkLayout(ctx);
    for (int s = 0; s < TaskBank::SectionCount; ++s) {
        if (ctx.bank().layout[s].headerEndLine > 0)
            RecordRules::checkRecords(ctx, Section(s));
    }
}

BankChecker::Report finish(CheckContext& ctx, QList<Finding> leading) {
    BankChecker::Report report;
    report.findings = std::move(leading);
    report.findings.append(ctx.findings);
    report.summary = summary(ctx, report.errorCount(), report.warningCount());
    return report;
}

} // namespace

QString CheckFinding::toString() const {
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
    CheckContext ctx(text, bankName, elements);
    runRules(ctx);
    return finish(ctx, {});
}

BankChecker::Report BankChecker::checkFiles(const QString& bankPath, const QString& elementsPath) {
    LegacyText::ReadProblem problem;
    const std::optional<QString> read = LegacyText::readFile(bankPath, &problem);
    if (!read) {
        Report report;
        report.bankRead = false;
        report.findings.append({bankPath, 0, Severity::Error,
                                problem.failure == LegacyText::ReadFailure::Missing
                                    ? QStringLiteral("Die Datei gibt es nicht.")
                                    : problem.text});
        report.summary = QStringLiteral("%1: nicht geprüft.").arg(bankPath);
        return report;
    }
    const QString& text = *read;

    QList<Finding> leading;
    std::optional<ElementTable> elements;
    const QString elementsName =
        elementsPath.isEmpty() ? QStringLiteral("elements.dat") : elementsPath;
    if (!elementsPath.isEmpty())
        elements = ElementTable::load(elementsPath);
    if (!elements || !elements->fileRead()) {
        const QString why = elements && QFileInfo::exists(elementsPath)
                                ? elements->readProblem() + u' '
                                : QString();
        leading.append({elementsName, 0, Severity::Warning,
                        why + QStringLiteral("Die Elementtabelle fehlt oder lässt sich nicht "
                                             "lesen; die Prüfungen gegen sie (Symbole, molare "
                                             "Massen, Gleichungen, Ionen) entfallen.")});
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
    CheckContext ctx(text, bankPath, elements ? &*elements : nullptr);
    runRules(ctx);
    return finish(ctx, std::move(leading));
}
