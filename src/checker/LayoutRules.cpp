#include "checker/LayoutRules.h"

#include "checker/BankChecker.h"
#include "checker/CheckContext.h"
#include "session/TextRules.h"

using Section = TaskBank::Section;

void LayoutRules::checkLayout(CheckContext& ctx) {
    const int last = ctx.lineCount();
    if (last == 0) {
        ctx.error(0, QStringLiteral("Die Datei ist leer."));
        return;
    }
    for (int s = 0; s < TaskBank::SectionCount; ++s) {
        const SectionLayout& lay = ctx.bank().layout[s];
        LayoutRules::checkHeader(ctx, s);
        if (lay.headerEndLine == 0) {
            ctx.error(last, QStringLiteral("Die Datei endet, bevor der %1 mit einer Zeile \"#\" "
                                           "beginnt; sie hat nur %2 von 9 Abschnitten.")
                                .arg(CheckContext::sectionLabel(s))
                                .arg(s));
            return;
        }
        if (lay.endLine == 0) {
            if (lay.truncatedAtLine > 0)
                ctx.error(lay.truncatedAtLine,
                          QStringLiteral("Der Datensatz ab hier ist unvollständig: die Datei endet "
                                         "nach %1 seiner %2 Zeilen.")
                              .arg(last - lay.truncatedAtLine + 1)
                              .arg(TaskBank::linesPerRecord(Section(s))));
            QString missing;
            if (s + 1 < TaskBank::SectionCount)
                missing = s + 2 < TaskBank::SectionCount
                              ? QStringLiteral("; die Abschnitte %1 bis 9 fehlen").arg(s + 2)
                              : QStringLiteral("; der Abschnitt 9 fehlt");
            ctx.error(last, QStringLiteral("Der %1 hat keine Zeile \"@\"; die Datei endet mitten "
                                           "im Abschnitt%2.")
                                .arg(CheckContext::sectionLabel(s), missing));
            return;
        }
        LayoutRules::checkLevelMarks(ctx, s);
    }
    const int end = ctx.bank().layout[TaskBank::SectionCount - 1].endLine;
    for (int l = end + 1; l <= last; ++l) {
        if (!TrimBlanks(ctx.at(l)).isEmpty()) {
            ctx.warning(l, QStringLiteral("Nach dem neunten \"@\" (Zeile %1) steht noch Text; das "
                                          "Programm liest ihn nie.")
                               .arg(end));
            break;
        }
    }
}

// Header lines are free text; only a "#" spoilt by blanks is worth a word,
// because the teacher surely meant it to end the header.
void LayoutRules::checkHeader(CheckContext& ctx, int s) {
    if (s > 0 && ctx.bank().layout[s - 1].endLine == 0)
        return;
    const int from = s == 0 ? 1 : ctx.bank().layout[s - 1].endLine + 1;
    const int headerEnd = ctx.bank().layout[s].headerEndLine;
    const int to = headerEnd > 0 ? headerEnd - 1 : ctx.lineCount();
    for (int l = from; l <= to; ++l) {
        if (ctx.at(l) != u"#" && TrimBlanks(ctx.at(l)) == u"#")
            ctx.warning(l,
                        QStringLiteral("Die Zeile \"%1\" enthält Leerzeichen und beendet deshalb "
                                       "den Kopf von %2 nicht; das tut nur eine Zeile, die "
                                       "genau \"#\" lautet.")
                            .arg(ctx.at(l).toString(), CheckContext::sectionLabel(s)));
    }
}

void LayoutRules::checkLevelMarks(CheckContext& ctx, int s) {
    const SectionLayout& lay = ctx.bank().layout[s];
    const auto section = Section(s);
    if (lay.levelMarkLines.isEmpty()) {
        if (section == TaskBank::AmountSubstancesSection)
            ctx.warning(lay.endLine,
                        QStringLiteral("Der %1 hat keine Zeile \"ææ\"; diese Seite nutzt zwar alle "
                                       "Einträge, aber jeder Abschnitt sollte sie haben.")
                            .arg(CheckContext::sectionLabel(s)));
        else
            ctx.error(lay.headerEndLine,
                      QStringLiteral("Der %1 hat keine Zeile \"ææ\"; die normale Stufe hat dann "
                                     "nichts zum Ziehen.")
                          .arg(CheckContext::sectionLabel(s)));
        return;
    }
    for (qsizetype k = 1; k < lay.levelMarkLines.size(); ++k)
        ctx.warning(lay.levelMarkLines.at(k),
                    QStringLiteral("Der %1 hat mehr als eine Zeile \"ææ\" (die erste in Zeile %2); "
                                   "es gilt die letzte, die normale Stufe umfasst %3 Einträge.")
                        .arg(CheckContext::sectionLabel(s))
                        .arg(lay.levelMarkLines.first())
                        .arg(ctx.bank().basicCount(section)));
}