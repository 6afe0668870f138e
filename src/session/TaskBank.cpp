#include "session/TaskBank.h"

#include <QCryptographicHash>

#include "chem/LegacyText.h"
#include "chem/TextLines.h"
#include "session/TextRules.h"

namespace {

const QString kSeparator = QStringLiteral("*");

} // namespace

const QString& TaskBank::levelMark() {
    static const QString mark = QStringLiteral(u"\u00E6\u00E6");
    return mark;
}

QString TaskBank::fixedWidth(QStringView line, int width) {
    if (line.size() >= width)
        return line.left(width).toString();
    QString out;
    out.reserve(width);
    out.append(line);
    out.append(QString(width - line.size(), u' '));
    return out;
}

bool TaskBank::IsTrue(QStringView line) {
    const QStringView t = TrimBlanks(line);
    return t.size() == 1 && (t.at(0) == u'J' || t.at(0) == u'j');
}

int TaskBank::linesPerRecord(Section s) {
    switch (s) {
    case MolarMassSubstancesSection:
    case SubstancesSection:
        return 3;
    case EquationsSection:
        return 1;
    default:
        return 2;
    }
}

QString TaskBank::sectionName(Section s) {
    static const char* names[] = {"ElementNames", "NumberSyllables", "MolarMassSubstances",
                                  "Definitions",  "IonCharges",      "Statements",
                                  "Equations",    "Substances",      "AmountSubstances"};
    return s >= 0 && s < SectionCount ? QString::fromLatin1(names[s]) : QString();
}

QString TaskBank::sectionTitle(Section s) {
    switch (s) {
    case ElementNamesSection:
        return QStringLiteral("Elementnamen");
    case NumberSyllablesSection:
        return QStringLiteral("Zahlsilben");
    case MolarMassSubstancesSection:
        return QStringLiteral("Molare Massen");
    case DefinitionsSection:
        return QStringLiteral("Definitionen");
    case IonChargesSection:
        return QStringLiteral("Ionenladungen");
    case StatementsSection:
        return QStringLiteral("Verständnisfragen");
    case EquationsSection:
        return QStringLiteral("Gleichungen");
    case SubstancesSection:
        return QStringLiteral("Formeln und Namen");
    case AmountSubstancesSection:
        return QStringLiteral("Stoffmengen");
    default:
        return {};
    }
}

int TaskBank::count(Section s) const {
    return visit(s, [](const auto& table) { return table.count(); });
}

int TaskBank::basicCount(Section s) const {
    return visit(s, [](const auto& table) { return table.basicCount; });
}

TaskBank TaskBank::LoadTaskBank(const QString& path) {
    LegacyText::ReadProblem problem;
    const std::optional<QByteArray> bytes = LegacyText::readBytes(path, &problem);
    if (!bytes) {
        TaskBank empty;
        empty.fileRead = false;
        empty.readProblem = problem.text;
        return empty;
    }
    TaskBank bank = fromText(LegacyText::decode(*bytes));
    bank.sha256 =
        QString::fromLatin1(QCryptographicHash::hash(*bytes, QCryptographicHash::Sha256).toHex());
    return bank;
}

TaskBank TaskBank::fromText(QStringView text) {
    TaskBank bank;
    bank.fileRead = true;
    TextLines lines(text);
    const QString& mark = levelMark();
    QStringView l1, l2, l3;

    for (int s = 0; s < SectionCount; ++s) {
        const auto section = static_cast<Section>(s);
        SectionLayout& lay = bank.layout[s];
        // Header: free lines up to and including a line that is exactly "#".
        bool headerDone = false;
        QStringView line;
        while (lines.next(line)) {
            if (line == u"#") {
                headerDone = true;
                break;
            }
        }
        if (!headerDone)
            break; // end of file: nothing more to read
        lay.headerEndLine = lines.lineNumber();

        const int perRecord = linesPerRecord(section);
        bool sectionClosed = false;
        while (lines.next(l1)) {
            const int first = lines.lineNumber();
            if (l1 == u"@") {
                lay.endLine = first;
                sectionClosed = true;
                break;
            }
            if (l1 == mark) {
                lay.levelMarkLines.append(first);
                // A later mark wins over an earlier one.
                bank.visit(section, [](auto& table) {
                    table.basicCount = table.count();
                    return 0;
                });
                continue;
            }
            // Further lines of a record are data whatever they hold.
            if ((perRecord >= 2 && !lines.next(l2)) || (perRecord >= 3 && !lines.next(l3))) {
                lay.truncatedAtLine = first;
                break;
            }
            switch (section) {
            case ElementNamesSection:
                bank.ElementNames.append({TermList::Build(l1, kSeparator), l2.toString()}, first);
                break;
            case NumberSyllablesSection:
                bank.NumberSyllables.append({ReadInt16Field(l1), TermList::Build(l2, kSeparator)},
                                            first);
                break;
            case MolarMassSubstancesSection:
                bank.MolarMassSubstances.append(
                    {fixedWidth(l1, kMolarMassNameWidth), ReadSingleField(l2), l3.toString()},
                    first);
                break;
            case DefinitionsSection:
                bank.Definitions.append(
                    {fixedWidth(l2, kDefinitionWidth), fixedWidth(l1, kTermWidth)}, first);
                break;
            case IonChargesSection:
                bank.IonCharges.append({fixedWidth(l1, kIonNameWidth), ReadInt16Field(l2)}, first);
                break;
            case StatementsSection:
                bank.Statements.append({IsTrue(l2), fixedWidth(l1, kStatementWidth)}, first);
                break;
            case EquationsSection:
                bank.Equations.append({l1.toString()}, first);
                break;
            case SubstancesSection:
                bank.Substances.append({std::nullopt, TermList::Build(l1, kSeparator),
                                        TermList::Build(l2, kSeparator), l3.toString()},
                                       first);
                break;
            case AmountSubstancesSection:
                bank.AmountSubstances.append({l1.toString(), l2.toString()}, first);
                break;
            default:
                break;
            }
        }
        if (!sectionClosed)
            break; // the file ended inside this section
    }
    bank.linesRead = lines.lineNumber();
    return bank;
}
