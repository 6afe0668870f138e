#include "chem/MistakeHints.h"

#include "chem/ChemicalFormula.h"
#include "chem/Equation.h"
#include "chem/FormulaText.h"
#include "chem/MolarMass.h"

#include <QList>
#include <QRegularExpression>
#include <QStringList>
#include <cmath>
#include <optional>

namespace {

using Hint = MistakeHints::Hint;

Hint hint(const char* cause, const QString& text) {
    return {QString::fromLatin1(cause), text};
}

bool sameIgnoringCase(QStringView a, QStringView b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// The number syllables of the bank, with the spellings it accepts.
struct Syllable {
    int number;
    QStringList spellings;
};
const QList<Syllable>& syllables() {
    static const QList<Syllable> list = {
        {1, {QStringLiteral("mono")}},
        {2, {QStringLiteral("di")}},
        {3, {QStringLiteral("tri")}},
        {4, {QStringLiteral("tetra")}},
        {5, {QStringLiteral("penta")}},
        {6, {QStringLiteral("hexa")}},
        {7, {QStringLiteral("hepta")}},
        {8, {QStringLiteral("octa"), QStringLiteral("okta")}},
        {9, {QStringLiteral("nona")}},
        {10, {QStringLiteral("deca"), QStringLiteral("deka")}},
        {11, {QStringLiteral("undeca"), QStringLiteral("undeka")}},
        {12, {QStringLiteral("dodeca"), QStringLiteral("dodeka")}},
    };
    return list;
}

QString decimalText(double value, int decimals) {
    return QString::number(value, 'f', decimals).replace(u'.', u',');
}

QString timesWord(int n) {
    switch (n) {
    case 2:
        return QStringLiteral("zweimal");
    case 3:
        return QStringLiteral("dreimal");
    case 4:
        return QStringLiteral("viermal");
    default:
        return QStringLiteral("%1-mal").arg(n);
    }
}

QString decimalsWords(int decimals) {
    switch (decimals) {
    case 0:
        return QStringLiteral("auf ganze Zahlen");
    case 1:
        return QStringLiteral("auf eine Nachkommastelle");
    case 2:
        return QStringLiteral("auf zwei Nachkommastellen");
    default:
        return QStringLiteral("auf %1 Nachkommastellen").arg(decimals);
    }
}

// A number as a student types it: "," or "." before the decimals.
struct Number {
    double value = 0;
    int decimals = 0;
};

std::optional<Number> numberAt(const QString& text, const QRegularExpression& pattern) {
    const QRegularExpressionMatch m = pattern.match(text);
    if (!m.hasMatch())
        return std::nullopt;
    QString digits = m.captured(1);
    digits.replace(u',', u'.');
    bool ok = false;
    const double value = digits.toDouble(&ok);
    if (!ok)
        return std::nullopt;
    const qsizetype point = digits.indexOf(u'.');
    return Number{value, point < 0 ? 0 : int(digits.size() - point - 1)};
}

// The number the page reads: the one the answer starts with.
std::optional<Number> leadingNumber(QStringView text) {
    static const QRegularExpression pattern(QStringLiteral("^\\s*([+-]?\\d+(?:[.,]\\d+)?)"));
    return numberAt(text.toString(), pattern);
}

std::optional<Number> anyNumber(QStringView text) {
    static const QRegularExpression pattern(QStringLiteral("(\\d+(?:[.,]\\d+)?)"));
    return numberAt(text.toString(), pattern);
}

bool sameRounded(double a, double b, int decimals) {
    return QString::number(a, 'f', decimals) == QString::number(b, 'f', decimals);
}

// Near enough for a student who worked with rounded atomic masses.
bool near(double given, double value, int decimals) {
    return sameRounded(given, value, decimals) || std::abs(given - value) <= 0.01 * std::abs(value);
}

double truncated(double value, int decimals) {
    const double scale = std::pow(10.0, decimals);
    return std::floor(value * scale + 1e-9) / scale;
}

// The number the page would have read wrongly although the student had it:
// text in front of it, or no number in front at all.
std::optional<Hint> unreadable(QStringView expectedText, const Number& expected,
                               QStringView given) {
    if (leadingNumber(given))
        return std::nullopt;
    const auto inside = anyNumber(given);
    if (!inside || !sameRounded(inside->value, expected.value, expected.decimals))
        return std::nullopt;
    return hint("unreadable",
                QStringLiteral("Richtig gerechnet, aber so kann die Zahl nicht gelesen werden: "
                               "nur die Zahl eintippen, also %1.")
                    .arg(expectedText.toString().replace(u'.', u',')));
}

std::optional<Hint> moreDecimals(QStringView expectedText, const Number& expected,
                                 const Number& given) {
    if (given.decimals <= expected.decimals ||
        !sameRounded(given.value, expected.value, expected.decimals))
        return std::nullopt;
    return hint("decimals", QStringLiteral("Richtig gerechnet – %1 runden: %2.")
                                .arg(decimalsWords(expected.decimals),
                                     expectedText.toString().replace(u'.', u',')));
}

// What both number pages ask first: the two numbers, or a hint that comes
// before any arithmetic (an unreadable answer, more decimals than asked).
struct NumberPair {
    Number want;
    Number got;
};
std::optional<NumberPair> readNumbers(QStringView expected, QStringView given,
                                      std::optional<Hint>* early) {
    const auto want = leadingNumber(expected);
    if (!want || given.trimmed().isEmpty())
        return std::nullopt;
    if ((*early = unreadable(expected, *want, given)))
        return std::nullopt;
    const auto got = leadingNumber(given);
    if (!got)
        return std::nullopt;
    if ((*early = moreDecimals(expected, *want, *got)))
        return std::nullopt;
    return NumberPair{*want, *got};
}

// "Fe^3+" as a student reads it: Fe³⁺.
QString ionText(const QString& symbol, int charge) {
    QString text = symbol + u'^';
    if (std::abs(charge) != 1)
        text += QString::number(std::abs(charge));
    text += charge > 0 ? u'+' : u'-';
    return FormulaText::formulaToPlain(text);
}

bool isMetal(const ElementTable::Element& e) {
    static const QStringList metals = {
        QStringLiteral("Alkalimetall"), QStringLiteral("Erdalkalimetall"),
        QStringLiteral("Metall"),       QStringLiteral("Übergangsmetall"),
        QStringLiteral("Lanthanoid"),   QStringLiteral("Actinoid")};
    return metals.contains(e.category);
}

// The charge of a simple anion from its group: Cl⁻, O²⁻, N³⁻.
int anionCharge(const ElementTable::Element& e) {
    const bool nonMetal =
        e.category == QStringLiteral("Nichtmetall") || e.category == QStringLiteral("Halogen");
    return nonMetal && e.group >= 15 && e.group <= 17 ? e.group - 18 : 0;
}

// The main group (1 to 8) of an element of groups 1, 2 and 13 to 18; 0 for others.
int mainGroup(const ElementTable::Element& e) {
    if (e.group == 1 || e.group == 2)
        return e.group;
    return e.group >= 13 ? e.group - 10 : 0;
}

// The usual ion charge of a main group; 0 where there is none.
int groupCharge(int mainGroupNumber) {
    switch (mainGroupNumber) {
    case 1:
    case 2:
    case 3:
        return mainGroupNumber;
    case 5:
    case 6:
    case 7:
        return mainGroupNumber - 8;
    default:
        return 0;
    }
}

QString chargeText(int charge) {
    return charge > 0 ? QStringLiteral("+%1").arg(charge) : QString::number(charge);
}

const ElementTable::Element* elementNamed(QStringView name, const ElementTable& elements) {
    for (const ElementTable::Element& e : elements.elements()) {
        if (sameIgnoringCase(e.name, name))
            return &e;
    }
    return nullptr;
}

// The formula in brackets at the end of a prompt: "Calciumhydroxid (Ca(OH)2)".
QString trailingFormula(QStringView prompt) {
    const QStringView text = prompt.trimmed();
    if (!text.endsWith(u')'))
        return {};
    int depth = 0;
    for (qsizetype i = text.size() - 1; i >= 0; --i) {
        if (text[i] == u')')
            ++depth;
        else if (text[i] == u'(' && --depth == 0)
            return text.mid(i + 1, text.size() - i - 2).toString();
    }
    return {};
}

// A formula whose every element has a mass in the table.
std::optional<ChemicalFormula> weighable(const QString& text, const ElementTable& elements) {
    if (text.isEmpty())
        return std::nullopt;
    const ChemicalFormula f = ChemicalFormula::parse(text);
    if (!f.isValid() || f.counts().isEmpty() || !MolarMass::of(f, elements).complete())
        return std::nullopt;
    return f;
}

// The molar mass in g/mol with one element counted once instead of its
// index times: what a forgotten index gives.
struct Variant {
    QString symbol;
    int count = 0;
    double mass = 0;
};
QList<Variant> forgottenIndexMasses(const ChemicalFormula& f, const ElementTable& elements) {
    const double whole = MolarMass::of(f, elements).hundredths / 100.0;
    QList<Variant> variants;
    for (auto it = f.counts().cbegin(); it != f.counts().cend(); ++it) {
        if (it.value() < 2)
            continue;
        const ElementTable::Element* e = elements.find(it.key());
        variants.append(
            {it.key(), it.value(), whole - (it.value() - 1) * e->massHundredths / 100.0});
    }
    return variants;
}

} // namespace

Hint MistakeHints::diagnose(Kind kind, QStringView prompt, QStringView expected, QStringView given,
                            const ElementTable& elements) {
    switch (kind) {
    case Kind::ElementSymbol:
        return elementSymbol(prompt, expected, given, elements);
    case Kind::ElementName:
        return elementName(prompt, expected, given, elements);
    case Kind::SyllableNumber:
        return syllableNumber(prompt, expected, given);
    case Kind::NumberSyllable:
        return numberSyllable(prompt, expected, given);
    case Kind::Formula:
        return formula(prompt, expected, given, elements);
    case Kind::SubstanceName:
        return substanceName(prompt, expected, given, elements);
    case Kind::MolarMass:
        return molarMass(prompt, expected, given, elements);
    case Kind::Amount:
        return amount(prompt, expected, given, elements);
    case Kind::Equation:
        return equation(prompt, expected, given);
    case Kind::IonCharge:
        return ionCharge(prompt, expected, given, elements);
    case Kind::Choice:
        return choice(given);
    }
    return {};
}

Hint MistakeHints::elementSymbol(QStringView name, QStringView expected, QStringView given,
                                 const ElementTable& elements) {
    const QString typed = given.trimmed().toString();
    const QString right = expected.trimmed().toString();
    if (typed.isEmpty() || typed == right)
        return {};
    if (sameIgnoringCase(typed, right)) {
        // Two capitals read as two elements; for these the pair is a
        // substance the student has met.
        static const QList<std::pair<QString, QString>> molecules = {
            {QStringLiteral("CO"), QStringLiteral("Kohlenstoffmonooxid")},
            {QStringLiteral("NO"), QStringLiteral("Stickstoffmonooxid")}};
        for (const auto& [formula, substance] : molecules) {
            if (typed == formula)
                return hint("sym-two",
                            QStringLiteral("%1 ist die Formel von %2 (%3 und %4), %5 das Element "
                                           "%6: der zweite Buchstabe eines Symbols ist klein.")
                                .arg(typed, substance, typed.left(1), typed.mid(1), right,
                                     name.trimmed().toString()));
        }
        return hint(
            "sym-case",
            right.size() == 1
                ? QStringLiteral("Ein Symbol beginnt mit einem Großbuchstaben: %1.").arg(right)
                : QStringLiteral("Ein Symbol beginnt mit einem Großbuchstaben, der zweite "
                                 "Buchstabe ist klein: %1.")
                      .arg(right));
    }
    if (sameIgnoringCase(typed, name.trimmed()))
        return hint("sym-name", QStringLiteral("Gefragt war das Symbol, nicht der Name: %1 hat das "
                                               "Symbol %2.")
                                    .arg(name.trimmed().toString(), right));
    if (const ElementTable::Element* other = elements.find(typed))
        return hint("sym-other", QStringLiteral("%1 ist das Symbol von %2 – %3 hat das Symbol %4.")
                                     .arg(typed, other->name, name.trimmed().toString(), right));
    return {};
}

Hint MistakeHints::elementName(QStringView symbol, QStringView expected, QStringView given,
                               const ElementTable& elements) {
    const QString typed = given.trimmed().toString();
    const QString sym = symbol.trimmed().toString();
    const QStringList names = expected.toString().split(QStringLiteral(" oder "));
    if (typed.isEmpty() || names.contains(typed))
        return {};
    for (const QString& n : names) {
        if (sameIgnoringCase(typed, n))
            return hint("name-case", QStringLiteral("Elementnamen schreibt man wie Nomen: großer "
                                                    "Anfangsbuchstabe, dann klein – %1.")
                                         .arg(n));
    }
    if (sameIgnoringCase(typed, sym))
        return hint("name-symbol", QStringLiteral("Gefragt war der Name: %1 ist das Symbol von %2.")
                                       .arg(sym, names.first()));
    const ElementTable::Element* other = elementNamed(typed, elements);
    if (other && other->symbol != sym)
        return hint("name-other", QStringLiteral("%1 hat das Symbol %2 – %3 ist %4.")
                                      .arg(other->name, other->symbol, sym, names.first()));
    return {};
}

Hint MistakeHints::syllableNumber(QStringView syllable, QStringView expected, QStringView given) {
    const QStringView typed = given.trimmed();
    if (typed.isEmpty() || typed == expected.trimmed())
        return {};
    static const QRegularExpression digit(QStringLiteral("\\d"));
    if (!typed.toString().contains(digit))
        return hint("num-letters",
                    QStringLiteral("Gefragt ist die Zahl in arabischen Ziffern: %1 steht für %2.")
                        .arg(syllable.trimmed().toString(), expected.trimmed().toString()));
    return {};
}

Hint MistakeHints::numberSyllable(QStringView number, QStringView expected, QStringView given) {
    const QString typed = given.trimmed().toString();
    QStringList spellings;
    for (QStringView s : expected.split(u'*')) {
        if (!s.trimmed().isEmpty())
            spellings << s.trimmed().toString();
    }
    if (typed.isEmpty() || spellings.isEmpty() || spellings.contains(typed))
        return {};
    const QString usual = spellings.first();
    for (const QString& s : spellings) {
        if (sameIgnoringCase(typed, s))
            return hint("syl-case",
                        QStringLiteral("Zahlsilben schreibt man klein: %1.").arg(usual));
    }
    for (const Syllable& s : syllables()) {
        if (s.spellings.contains(typed) && !spellings.contains(typed))
            return hint("syl-other", QStringLiteral("%1 steht für %2 – für %3 heißt die Zahlsilbe "
                                                    "%4.")
                                         .arg(typed)
                                         .arg(s.number)
                                         .arg(number.trimmed().toString(), usual));
    }
    if (typed == number.trimmed())
        return hint("syl-number",
                    QStringLiteral("Gefragt ist die Zahlsilbe, nicht die Zahl: %1.").arg(usual));
    return {};
}

Hint MistakeHints::formula(QStringView name, QStringView expected, QStringView given,
                           const ElementTable& elements) {
    const QString typed = given.trimmed().toString();
    const QString right = expected.trimmed().toString();
    if (typed.isEmpty() || typed == right)
        return {};
    const ChemicalFormula want = ChemicalFormula::parse(right);
    if (!want.isValid())
        return {};
    const QString rightPlain = FormulaText::formulaToPlain(right);

    if (sameIgnoringCase(typed, right)) {
        // The first symbol written differently names the trouble.
        qsizetype at = 0;
        for (const ChemicalFormula::Piece& p : want.pieces()) {
            at = right.indexOf(p.text, at);
            if (at < 0)
                break;
            if (p.kind == ChemicalFormula::PieceKind::Element &&
                typed.mid(at, p.text.size()) != p.text)
                return hint("f-case",
                            QStringLiteral("Groß- und Kleinschreibung: %1, nicht %2 – die Formel "
                                           "heißt %3.")
                                .arg(p.text, typed.mid(at, p.text.size()), rightPlain));
            at += p.text.size();
        }
        return {};
    }
    if (sameIgnoringCase(typed, name.trimmed()))
        return hint("f-name",
                    QStringLiteral("Gefragt war die Formel, nicht der Name: %1.").arg(rightPlain));

    static const QRegularExpression leadingCount(QStringLiteral("^(\\d+)\\s*(\\D.*)$"));
    if (const QRegularExpressionMatch m = leadingCount.match(typed); m.hasMatch()) {
        const QString count = m.captured(1);
        const QString rest = m.captured(2);
        if (rest == right)
            return hint("f-coef", QStringLiteral("Eine Zahl vor der Formel zählt ganze Teilchen; "
                                                 "gefragt ist nur die Formel: %1.")
                                      .arg(rightPlain));
        // The count belongs behind one symbol as its index.
        const ChemicalFormula restFormula = ChemicalFormula::parse(rest);
        if (restFormula.isValid()) {
            qsizetype at = 0;
            const QList<ChemicalFormula::Piece>& pieces = restFormula.pieces();
            for (int i = 0; i < pieces.size(); ++i) {
                at = rest.indexOf(pieces[i].text, at) + pieces[i].text.size();
                const bool bare = i + 1 == pieces.size() ||
                                  pieces[i + 1].kind != ChemicalFormula::PieceKind::Count;
                if (pieces[i].kind == ChemicalFormula::PieceKind::Element && bare &&
                    rest.left(at) + count + rest.mid(at) == right)
                    return hint("f-coef",
                                QStringLiteral("Die %1 gehört als Index hinter %2: %3. Eine Zahl "
                                               "vor der Formel zählt ganze Teilchen.")
                                    .arg(count, pieces[i].text, rightPlain));
            }
        }
    }

    const ChemicalFormula got = ChemicalFormula::parse(typed);
    if (!got.isValid())
        return {};
    if (right.contains(u'(') && !typed.contains(u'(') &&
        QString(right).remove(u'(').remove(u')') == typed)
        return hint("f-paren", QStringLiteral("Die Klammer gehört dazu: %1 – die Zahl hinter der "
                                              "Klammer gilt für die ganze Gruppe.")
                                   .arg(rightPlain));

    // Salts of one metal and one simple anion.
    if (right.contains(u'(') || typed.contains(u'(') || want.symbols().size() != 2 ||
        got.symbols() != want.symbols())
        return {};
    const QString metalSymbol = want.symbols().at(0);
    const QString anionSymbol = want.symbols().at(1);
    const int a = want.count(metalSymbol), b = want.count(anionSymbol);
    const int ga = got.count(metalSymbol), gb = got.count(anionSymbol);
    if (ga == b && gb == a && a != b)
        return hint("f-swap", QStringLiteral("Die Indizes sind vertauscht: %1. Ein Index zählt die "
                                             "Atome des Symbols, hinter dem er steht.")
                                  .arg(rightPlain));
    const ElementTable::Element* metal = elements.find(metalSymbol);
    const ElementTable::Element* nonMetal = elements.find(anionSymbol);
    if (!metal || !nonMetal || !isMetal(*metal) || anionCharge(*nonMetal) == 0)
        return {};
    const int anion = anionCharge(*nonMetal);
    if ((-b * anion) % a != 0)
        return {};
    const int cation = -b * anion / a;
    static const QRegularExpression roman(QStringLiteral("\\(([IVX]+)\\)"));
    const bool typedNeutralForOther = (-gb * anion) % ga == 0 && -gb * anion / ga != cation;
    if (typedNeutralForOther && roman.match(name).hasMatch())
        return hint("f-roman", QStringLiteral("Die römische Zahl im Namen ist die Ladung des "
                                              "Metall-Ions: %1. Mit %2 ergibt das %3.")
                                   .arg(ionText(metalSymbol, cation), ionText(anionSymbol, anion),
                                        rightPlain));
    if (ga * cation + gb * anion != 0)
        return hint("f-charge", QStringLiteral("%1 und %2 gleichen sich so nicht aus: Es braucht "
                                               "%3 %1 für %4 %2 – %5.")
                                    .arg(ionText(metalSymbol, cation), ionText(anionSymbol, anion))
                                    .arg(a)
                                    .arg(b)
                                    .arg(rightPlain));
    return {};
}

Hint MistakeHints::substanceName(QStringView formula, QStringView expected, QStringView given,
                                 const ElementTable& elements) {
    const QString typed = given.trimmed().toString();
    const QString right = expected.trimmed().toString();
    if (typed.isEmpty() || typed == right)
        return {};
    if (sameIgnoringCase(typed, right))
        return hint("n-case", QStringLiteral("Stoffnamen schreibt man wie Nomen: großer "
                                             "Anfangsbuchstabe, sonst klein – %1.")
                                  .arg(right));
    // One or two number syllables too many.
    QList<QString> shorter = {typed};
    for (int round = 0; round < 2; ++round) {
        QList<QString> next;
        for (const QString& text : shorter) {
            for (const Syllable& s : syllables()) {
                for (const QString& sp : s.spellings) {
                    for (qsizetype at = text.indexOf(sp, 0, Qt::CaseInsensitive); at >= 0;
                         at = text.indexOf(sp, at + 1, Qt::CaseInsensitive)) {
                        const QString cut = QString(text).remove(at, sp.size());
                        if (sameIgnoringCase(cut, right))
                            return hint("n-syllable",
                                        QStringLiteral("Hier ohne Zahlsilben: %1 – bei Salzen "
                                                       "folgen die Anzahlen aus den Ladungen "
                                                       "der Ionen.")
                                            .arg(right));
                        next << cut;
                    }
                }
            }
        }
        shorter = next;
    }
    const ChemicalFormula f = ChemicalFormula::parse(formula.trimmed());
    if (f.isValid() && !f.symbols().isEmpty()) {
        const ElementTable::Element* first = elements.find(f.symbols().first());
        if (first && isMetal(*first) && right.startsWith(first->name) &&
            typed.indexOf(first->name, 1, Qt::CaseInsensitive) > 0)
            return hint("n-metal",
                        QStringLiteral("Das Metall steht im Namen vorn: %1.").arg(right));
    }
    if (right.endsWith(QStringLiteral("id")) &&
        sameIgnoringCase(typed + QStringLiteral("id"), right))
        return hint("n-id",
                    QStringLiteral("Der Name des Nichtmetall-Ions endet auf -id: %1.").arg(right));
    return {};
}

Hint MistakeHints::molarMass(QStringView prompt, QStringView expected, QStringView given,
                             const ElementTable& elements) {
    std::optional<Hint> early;
    const std::optional<NumberPair> numbers = readNumbers(expected, given, &early);
    if (!numbers)
        return early.value_or(Hint{});
    const Number* want = &numbers->want;
    const Number* got = &numbers->got;
    const auto f = weighable(trailingFormula(prompt), elements);
    if (!f)
        return {};
    const QString shown = FormulaText::formulaToPlain(f->text());
    const qint64 hundredths = MolarMass::of(*f, elements).hundredths;
    if (got->decimals == 0) {
        qint64 numbers = 0;
        for (auto it = f->counts().cbegin(); it != f->counts().cend(); ++it)
            numbers += qint64(it.value()) * elements.find(it.key())->number;
        if (double(numbers) == got->value && numbers != hundredths / 100)
            return hint(
                "m-numbers",
                QStringLiteral("Das ist die Summe der Ordnungszahlen – für die molare Masse "
                               "zählen die Atommassen."));
    }
    const double exact = hundredths / 100.0;
    if (got->decimals == want->decimals && sameRounded(exact, want->value, want->decimals) &&
        sameRounded(truncated(exact, want->decimals), got->value, want->decimals) &&
        !sameRounded(got->value, want->value, want->decimals))
        return hint("m-round",
                    QStringLiteral("Beim Runden: Ab einer 5 wird aufgerundet – %1 "
                                   "wird %2.")
                        .arg(decimalText(exact, 2), decimalText(want->value, want->decimals)));
    for (const Variant& v : forgottenIndexMasses(*f, elements)) {
        if (std::abs(got->value - v.mass) <= 0.15 && std::abs(got->value - exact) > 0.5)
            return hint("m-index", QStringLiteral("Ein Index fehlt: In %1 stecken %2 %3-Atome – "
                                                  "die Atommasse von %3 zählt %4.")
                                       .arg(shown)
                                       .arg(v.count)
                                       .arg(v.symbol, timesWord(v.count)));
    }
    return {};
}

Hint MistakeHints::amount(QStringView question, QStringView expected, QStringView given,
                          const ElementTable& elements) {
    std::optional<Hint> early;
    const std::optional<NumberPair> numbers = readNumbers(expected, given, &early);
    if (!numbers)
        return early.value_or(Hint{});
    const Number* want = &numbers->want;
    const Number* got = &numbers->got;
    const int d = want->decimals;
    const QString q = question.toString();
    const double v = got->value;
    static const QRegularExpression massPattern(QStringLiteral("(\\d+(?:,\\d+)?)\\s*g\\b"));
    static const QRegularExpression volumePattern(QStringLiteral("(\\d+(?:,\\d+)?)\\s*l\\b"));
    static const QRegularExpression formulaPattern(
        QStringLiteral("\\(([A-Z][A-Za-z0-9()]*)\\)\\?"));
    const auto mass = numberAt(q, massPattern);
    const auto volume = numberAt(q, volumePattern);
    const bool molarVolume = q.contains(QStringLiteral("22,4"));

    if (mass && mass->value > 0) {
        const QRegularExpressionMatch fm = formulaPattern.match(q);
        const auto f = fm.hasMatch() ? weighable(fm.captured(1), elements) : std::nullopt;
        if (!f)
            return {};
        const double m = mass->value;
        const double M = MolarMass::of(*f, elements).hundredths / 100.0;
        const double n = m / M;
        if (near(v, M / m, d) && !near(M / m, n, d))
            return hint("a-inverse", QStringLiteral("Umgekehrt geteilt: n = m / M – die Masse "
                                                    "wird durch die molare Masse geteilt."));
        if (near(v, m / 22.4, d) && !near(m / 22.4, n, d))
            return hint("a-gas", QStringLiteral("22,4 l/mol gilt nur für das Volumen eines Gases – "
                                                "hier ist eine Masse gegeben: n = m / M."));
        for (const Variant& var : forgottenIndexMasses(*f, elements)) {
            if (near(v, m / var.mass, d) && !near(m / var.mass, n, d))
                return hint("a-index", QStringLiteral("Ein Index fehlt: In %1 stecken %2 "
                                                      "%3-Atome, also ist M = %4 g/mol.")
                                           .arg(FormulaText::formulaToPlain(f->text()))
                                           .arg(var.count)
                                           .arg(var.symbol, decimalText(M, 2)));
        }
        if (got->decimals == d && sameRounded(n, want->value, d) &&
            sameRounded(truncated(n, d), v, d) && !sameRounded(v, want->value, d))
            return hint("a-round", QStringLiteral("Beim Runden: Ab einer 5 wird aufgerundet – %1 "
                                                  "wird %2.")
                                       .arg(decimalText(n, d + 2), decimalText(want->value, d)));
        return {};
    }
    if (volume && volume->value > 0 && molarVolume) {
        const double n = volume->value / 22.4;
        if (near(v, 22.4 / volume->value, d) && !near(22.4 / volume->value, n, d))
            return hint("a-inverse",
                        QStringLiteral("Umgekehrt geteilt: n = V / Vm – das Volumen wird durch "
                                       "22,4 l/mol geteilt."));
        if (near(v, volume->value * 22.4, d))
            return hint("a-volume", QStringLiteral("Malgenommen statt geteilt: n = V / Vm – das "
                                                   "Volumen wird durch 22,4 l/mol geteilt."));
    }
    return {};
}

Hint MistakeHints::equation(QStringView equation, QStringView expected, QStringView given) {
    const QStringList typed = given.toString().split(u' ', Qt::SkipEmptyParts);
    const QStringList right = expected.toString().split(u' ', Qt::SkipEmptyParts);
    if (typed.isEmpty() || typed == right)
        return {};
    static const QRegularExpression letter(QStringLiteral("[A-Za-z]"));
    static const QRegularExpression whole(QStringLiteral("^\\d+$"));
    static const QRegularExpression fraction(QStringLiteral("^\\d+(?:[.,/]\\d+)$"));
    for (const QString& t : typed) {
        if (t.contains(letter))
            return hint("e-formula", QStringLiteral("In die Felder gehören nur die Zahlen vor den "
                                                    "Formeln – die Formeln selbst bleiben, wie "
                                                    "sie sind."));
    }
    for (const QString& t : typed) {
        if (fraction.match(t).hasMatch())
            return hint("e-fraction", QStringLiteral("Koeffizienten sind ganze Zahlen: alle so "
                                                     "malnehmen, dass kein Bruch bleibt."));
    }
    // The equation with the student's numbers, in the bank's notation.
    const QStringList sides = equation.toString().split(QStringLiteral(" = "));
    if (sides.size() != 2)
        return {};
    QString line;
    int k = 0;
    for (int side = 0; side < 2; ++side) {
        const QStringList species = sides[side].split(QStringLiteral(" + "));
        for (int i = 0; i < species.size(); ++i) {
            if (k >= typed.size() || !whole.match(typed[k]).hasMatch() || typed[k].toInt() == 0)
                return {};
            line += (i > 0 ? QStringLiteral("+") : QString()) + u'@' + typed[k++] +
                    species[i].trimmed();
        }
        if (side == 0)
            line += u'=';
    }
    if (k != typed.size())
        return {};
    const Equation::Reading reading = Equation::read(line);
    if (!reading.ok())
        return {};
    const Equation::Balance balance = Equation::balance(reading);
    if (balance.balanced && balance.divisor > 1)
        return hint("e-multiple",
                    QStringLiteral("Richtig ausgeglichen – aber alle Zahlen sind durch %1 "
                                   "teilbar: Es gelten die kleinsten ganzen Zahlen.")
                        .arg(balance.divisor));
    if (!balance.balanced && !balance.differences.isEmpty())
        return hint("e-unbalanced", QStringLiteral("Noch nicht ausgeglichen: %1.")
                                        .arg(balance.differences.join(QStringLiteral("; "))));
    return {};
}

Hint MistakeHints::ionCharge(QStringView ion, QStringView expected, QStringView given,
                             const ElementTable& elements) {
    bool ok1 = false, ok2 = false;
    const int want = expected.trimmed().toString().replace(u'−', u'-').toInt(&ok1);
    const int got = given.trimmed().toString().replace(u'−', u'-').toInt(&ok2);
    if (!ok1 || !ok2 || want == got)
        return {};
    const QString name = ion.trimmed().toString();
    if (want != 0 && got == -want)
        return hint("i-sign",
                    QStringLiteral("Die Größe stimmt, das Vorzeichen nicht: Das %1 ist "
                                   "%2 geladen (%3).")
                        .arg(name, want > 0 ? QStringLiteral("positiv") : QStringLiteral("negativ"),
                             chargeText(want)));
    // Simple ions of the main groups: the element and its group.
    static const QList<std::pair<QString, QString>> anions = {
        {QStringLiteral("Fluorid"), QStringLiteral("F")},
        {QStringLiteral("Chlorid"), QStringLiteral("Cl")},
        {QStringLiteral("Bromid"), QStringLiteral("Br")},
        {QStringLiteral("Iodid"), QStringLiteral("I")},
        {QStringLiteral("Oxid"), QStringLiteral("O")},
        {QStringLiteral("Sulfid"), QStringLiteral("S")},
        {QStringLiteral("Nitrid"), QStringLiteral("N")},
        {QStringLiteral("Phosphid"), QStringLiteral("P")}};
    if (!name.endsWith(QStringLiteral("-Ion")))
        return {};
    const QString stem = name.chopped(4);
    const ElementTable::Element* e = nullptr;
    for (const auto& [anionName, symbol] : anions) {
        if (stem == anionName)
            e = elements.find(symbol);
    }
    if (!e) {
        e = elementNamed(stem, elements);
        if (e && !isMetal(*e))
            e = nullptr;
    }
    if (!e)
        return {};
    const int group = mainGroup(*e);
    if (group == 0 || groupCharge(group) != want)
        return {};
    for (int neighbour : {group - 1, group + 1}) {
        if (neighbour >= 1 && groupCharge(neighbour) != 0 && groupCharge(neighbour) == got)
            return hint("i-neighbour",
                        QStringLiteral("%1 steht in der %2. Hauptgruppe: Ladung %3. Die Ladung %4 "
                                       "haben die Ionen der %5. Hauptgruppe.")
                            .arg(e->name)
                            .arg(group)
                            .arg(chargeText(want), chargeText(got))
                            .arg(neighbour));
    }
    return {};
}

Hint MistakeHints::choice(QStringView given) {
    if (given.trimmed().isEmpty())
        return hint("c-empty", QStringLiteral("Nichts ausgewählt – hier fehlt die Antwort."));
    return {};
}
