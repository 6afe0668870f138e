#pragma once

#include <QString>
#include <QStringView>

// What a screen reader says for a control of a task page: its task in a few
// words ("Symbol für Arsen", "Koeffizient 1 in Gleichung 2") as its
// accessible name, and after checking, as its description, the verdict and
// the right answer. Plain functions of the prompt, so that every page words
// its tasks the same way.
namespace TaskNames {

QString symbolFor(QStringView elementName);
QString nameForSymbol(QStringView symbol);
QString numberForSyllable(QStringView syllable);
QString syllableForNumber(QStringView number);
QString formulaFor(QStringView substanceName);
QString nameForFormula(QStringView formula);
QString molarMassOf(QStringView substanceName);
QString amountFor(QStringView question);
// Coefficient slot (1 to 4, left to right) of equation row (1 to 5).
QString coefficient(int slot, int equation);
QString definitionOf(QStringView term);
QString termFor(int number, QStringView definition);
// "Ladung des Oxid-Ions"; a name that is not an "-Ion" stays as it is.
QString chargeOf(QStringView ionName);
// The pair of choices of statement number (from 1), and one of its words.
QString answerTo(int number, QStringView statement);
QString choiceFor(QStringView word, int number);
QString calculatorFor(QStringView task);

// The description after checking: "richtig" or "falsch, richtig ist: …";
// an empty right answer leaves the second half out, and a "*" key of
// alternatives is read as "a oder b".
QString verdict(bool right, QStringView rightAnswer = {});

} // namespace TaskNames
