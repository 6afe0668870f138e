#include "pages/TaskNames.h"

#include "chem/FormulaText.h"
#include "pages/AnswerRules.h"

namespace {

// Bank texts are padded with blanks; a name read aloud has none.
QString clean(QStringView text) {
    return text.trimmed().toString();
}

} // namespace

namespace TaskNames {

QString symbolFor(QStringView elementName) {
    return QStringLiteral("Symbol für ") + clean(elementName);
}

QString nameForSymbol(QStringView symbol) {
    return QStringLiteral("Name zum Symbol ") + clean(symbol);
}

QString numberForSyllable(QStringView syllable) {
    return QStringLiteral("Zahl zur Zahlsilbe ") + clean(syllable);
}

QString syllableForNumber(QStringView number) {
    return QStringLiteral("Zahlsilbe zur Zahl ") + clean(number);
}

QString formulaFor(QStringView substanceName) {
    return QStringLiteral("Formel für ") + clean(substanceName);
}

QString nameForFormula(QStringView formula) {
    return QStringLiteral("Name zur Formel ") + FormulaText::formulaToPlain(clean(formula));
}

QString molarMassOf(QStringView substanceName) {
    return QStringLiteral("Molare Masse von ") + clean(substanceName) + QStringLiteral(" in g/mol");
}

QString amountFor(QStringView question) {
    return QStringLiteral("Stoffmenge in mol: ") + clean(question);
}

QString coefficient(int slot, int equation) {
    return QStringLiteral("Koeffizient %1 in Gleichung %2").arg(slot).arg(equation);
}

QString definitionOf(QStringView term) {
    return QStringLiteral("Definition von ") + clean(term);
}

QString termFor(int number, QStringView definition) {
    return QStringLiteral("Begriff zu Definition %1: ").arg(number) + clean(definition);
}

QString chargeOf(QStringView ionName) {
    const QString name = clean(ionName);
    if (name.endsWith(QLatin1String("-Ion")))
        return QStringLiteral("Ladung des ") + name + u's';
    return QStringLiteral("Ladung: ") + name;
}

QString answerTo(int number, QStringView statement) {
    return QStringLiteral("Frage %1: ").arg(number) + clean(statement);
}

QString choiceFor(QStringView word, int number) {
    return word.toString() + QStringLiteral(" zu Frage %1").arg(number);
}

QString calculatorFor(QStringView task) {
    return QStringLiteral("Taschenrechner für ") + clean(task);
}

QString verdict(bool right, QStringView rightAnswer) {
    if (right)
        return QStringLiteral("richtig");
    // A key of alternatives ("*tetra*tetr*") is read as "tetra oder tetr".
    const QString answer = rightAnswer.contains(u'*')
                               ? AnswerRules::readableAlternatives(rightAnswer)
                               : clean(rightAnswer);
    return answer.isEmpty() ? QStringLiteral("falsch")
                            : QStringLiteral("falsch, richtig ist: ") + answer;
}

} // namespace TaskNames
