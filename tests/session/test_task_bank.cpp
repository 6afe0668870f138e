#include "TestSupport.h"
#include "chem/LegacyText.h"
#include "session/TaskBank.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kMark = QStringLiteral(u"\u00E6\u00E6");

// Eight empty sections after the first one, so that a test can focus on one.
QStringList restOfBank(int fromSection) {
    QStringList out;
    for (int s = fromSection; s < 9; ++s)
        out << QStringLiteral("Abschnitt %1").arg(s + 1) << QStringLiteral("#")
            << QStringLiteral("@");
    return out;
}

TaskBank bankOf(const QStringList& lines) {
    return TaskBank::fromText(LegacyText::decode(cp1252Lines(lines)));
}

} // namespace

class TestTaskBank : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readsSectionsAndBasicCounts();
    void marksCountOnlyAsFirstLineOfARecord();
    void cutsAndPadsFixedWidthFields();
    void readsNumberLinesLeniently();
    void readsYesFlags();
    void stopsAtTheEndOfTheFile();
    void missingFileGivesEmptyTables();
    void loadsBankSavedAsUtf8();
    void decodesAllOfWindows1252();
    void buildsTermLists();
};

void TestTaskBank::readsSectionsAndBasicCounts() {
    const QStringList lines = syntheticBank(6, 3);
    const TaskBank bank = bankOf(lines);
    for (int s = 0; s < TaskBank::SectionCount; ++s) {
        const auto section = TaskBank::Section(s);
        QCOMPARE(bank.count(section), 9);
        QCOMPARE(bank.basicCount(section), 6);
        QCOMPARE(bank.usableCount(section, false), 6);
        QCOMPARE(bank.usableCount(section, true), 9);
    }
    QCOMPARE(bank.ElementNames[1].Name.Item(1), QStringLiteral("Element1"));
    QCOMPARE(bank.ElementNames[9].Symbol, QStringLiteral("E9"));
    QCOMPARE(bank.NumberSyllables[3].Number, std::int16_t(3));
    QCOMPARE(bank.MolarMassSubstances[2].MolarMass, 2.5f);
    QCOMPARE(bank.MolarMassSubstances[2].Formula, QStringLiteral("X2"));
    QCOMPARE(bank.Definitions[4].Term.trimmed(), QStringLiteral("Begriff 4"));
    QCOMPARE(bank.Definitions[4].Definition.trimmed(), QStringLiteral("Definition 4"));
    QCOMPARE(bank.IonCharges[1].Charge, std::int16_t(-2));
    QVERIFY(bank.Statements[1].IsTrue);
    QVERIFY(!bank.Statements[2].IsTrue);
    QCOMPARE(bank.Equations[5].Equation, QStringLiteral("@5A+@1B=@1C5"));
    QVERIFY(!bank.Substances[1].Lead.has_value());
    QCOMPARE(bank.Substances[1].SecondTerm->Item(2), QStringLiteral("X^-"));
    QCOMPARE(bank.AmountSubstances[7].Second, QStringLiteral("0.7"));
    QCOMPARE(bank.ElementNames.lineOf(1), 3);

    // Header lines are skipped up to "#"; a section without a mark keeps 0;
    // the later of two marks wins; a mark first gives 0.
    QStringList odd{QStringLiteral("Titel"),
                    QStringLiteral("# kein Ende"),
                    QStringLiteral("#"),
                    QStringLiteral("Eisen"),
                    QStringLiteral("Fe"),
                    kMark,
                    QStringLiteral("Gold"),
                    QStringLiteral("Au"),
                    kMark,
                    QStringLiteral("Zinn"),
                    QStringLiteral("Sn"),
                    QStringLiteral("@"),
                    QStringLiteral("Zahlsilben"),
                    QStringLiteral("#"),
                    QStringLiteral("1"),
                    QStringLiteral("mono"),
                    QStringLiteral("@"),
                    QStringLiteral("Massen"),
                    QStringLiteral("#"),
                    kMark,
                    QStringLiteral("Wasser"),
                    QStringLiteral("18.0"),
                    QStringLiteral("H2O"),
                    QStringLiteral("@")};
    odd << restOfBank(3);
    const TaskBank b = bankOf(odd);
    QCOMPARE(b.ElementNames.count(), 3);
    QCOMPARE(b.ElementNames.basicCount, 2);
    QCOMPARE(b.layout[0].levelMarkLines.size(), 2);
    QCOMPARE(b.NumberSyllables.count(), 1);
    QCOMPARE(b.NumberSyllables.basicCount, 0);
    QCOMPARE(b.MolarMassSubstances.basicCount, 0);
    QCOMPARE(b.MolarMassSubstances.count(), 1);
    QCOMPARE(b.layout[8].endLine, odd.size());
}

void TestTaskBank::marksCountOnlyAsFirstLineOfARecord() {
    QStringList lines{QStringLiteral("Elemente"), QStringLiteral("#"),
                      QStringLiteral("Eisen"),    QStringLiteral("@"), // data: a symbol "@"
                      QStringLiteral("Gold"),     kMark,               // data: a symbol "ææ"
                      QStringLiteral("@ "),       QStringLiteral("X"), // "@ " starts a record
                      QStringLiteral("#"),        QStringLiteral("Y"), // "#" inside is data
                      QStringLiteral(" @"),       QStringLiteral("Z"),
                      QStringLiteral("@")};
    lines << restOfBank(1);
    const TaskBank b = bankOf(lines);
    QCOMPARE(b.ElementNames.count(), 5);
    QCOMPARE(b.ElementNames[1].Symbol, QStringLiteral("@"));
    QCOMPARE(b.ElementNames[2].Symbol, kMark);
    QCOMPARE(b.ElementNames[3].Name.Item(1), QStringLiteral("@ "));
    QCOMPARE(b.ElementNames[4].Name.Item(1), QStringLiteral("#"));
    QCOMPARE(b.ElementNames[5].Name.Item(1), QStringLiteral(" @"));
    QCOMPARE(b.ElementNames.basicCount, 0);
    QCOMPARE(b.layout[8].endLine, lines.size());
}

void TestTaskBank::cutsAndPadsFixedWidthFields() {
    const QString longName(45, u'n');
    const QString longDef = QString(130, u'd');
    QStringList lines{QStringLiteral("E"),
                      QStringLiteral("#"),
                      QStringLiteral("@"),
                      QStringLiteral("Z"),
                      QStringLiteral("#"),
                      QStringLiteral("@"),
                      QStringLiteral("M"),
                      QStringLiteral("#"),
                      longName,
                      QStringLiteral("1"),
                      QStringLiteral("X"),
                      QStringLiteral("Ab"),
                      QStringLiteral("1"),
                      QStringLiteral("Y"),
                      QStringLiteral("@"),
                      QStringLiteral("D"),
                      QStringLiteral("#"),
                      QStringLiteral("Säure"),
                      longDef,
                      QStringLiteral("@")};
    lines << restOfBank(4);
    const TaskBank b = bankOf(lines);
    QCOMPARE(b.MolarMassSubstances[1].Name, QString(40, u'n'));
    QCOMPARE(b.MolarMassSubstances[2].Name, QStringLiteral("Ab") + QString(38, u' '));
    QCOMPARE(b.Definitions[1].Term, QStringLiteral("Säure") + QString(15, u' '));
    QCOMPARE(b.Definitions[1].Definition.size(), 120);
}

void TestTaskBank::readsNumberLinesLeniently() {
    QStringList lines{QStringLiteral("E"), QStringLiteral("#"), QStringLiteral("@"),
                      QStringLiteral("Z"), QStringLiteral("#")};
    const QStringList numbers{"3.5",     "2.5", "-2.5", "40000", "-32768",
                              "32767.5", "abc", " 12 ", "1e2",   "7,9"};
    for (const QString& n : numbers)
        lines << n << QStringLiteral("x");
    lines << QStringLiteral("@") << QStringLiteral("M") << QStringLiteral("#");
    for (const QString& m :
         {QStringLiteral("58,4"), QStringLiteral("1e39"), QStringLiteral(" 18.02")})
        lines << QStringLiteral("Stoff") << m << QStringLiteral("F");
    lines << QStringLiteral("@");
    lines << restOfBank(3);
    const TaskBank b = bankOf(lines);
    const std::int16_t expected[] = {4, 2, -2, 0, -32768, 0, 0, 12, 100, 7};
    QCOMPARE(b.NumberSyllables.count(), 10);
    for (int i = 0; i < 10; ++i)
        QCOMPARE(b.NumberSyllables[i + 1].Number, expected[i]);
    QCOMPARE(b.MolarMassSubstances[1].MolarMass, 58.0f);
    QCOMPARE(b.MolarMassSubstances[2].MolarMass, 0.0f);
    QCOMPARE(b.MolarMassSubstances[3].MolarMass, 18.02f);
}

void TestTaskBank::readsYesFlags() {
    QVERIFY(TaskBank::IsTrue(u"J"));
    QVERIFY(TaskBank::IsTrue(u"j"));
    QVERIFY(TaskBank::IsTrue(u" J "));
    QVERIFY(!TaskBank::IsTrue(u"Ja"));
    QVERIFY(!TaskBank::IsTrue(u"N"));
    QVERIFY(!TaskBank::IsTrue(u""));
}

void TestTaskBank::stopsAtTheEndOfTheFile() {
    // Cut inside a record: the cut record is left out and noted.
    QStringList cut{QStringLiteral("E"), QStringLiteral("#"), QStringLiteral("Eisen"),
                    QStringLiteral("Fe"), QStringLiteral("Gold")};
    TaskBank b = bankOf(cut);
    QCOMPARE(b.ElementNames.count(), 1);
    QCOMPARE(b.layout[0].truncatedAtLine, 5);
    QCOMPARE(b.layout[0].endLine, 0);
    QCOMPARE(b.NumberSyllables.count(), 0);

    // No "#" at all, a header that never ends, an empty file, a lone mark.
    for (const QStringList& lines :
         {QStringList{QStringLiteral("nur Text")}, QStringList{}, QStringList{kMark},
          QStringList{QStringLiteral("#"), QStringLiteral("Eisen")}}) {
        b = bankOf(lines);
        for (int s = 0; s < TaskBank::SectionCount; ++s)
            QVERIFY(b.count(TaskBank::Section(s)) <= 1);
    }
    // Anything after the ninth "@" is never read.
    QStringList full = syntheticBank(6, 0);
    full << QStringLiteral("#") << QStringLiteral("Eisen") << QStringLiteral("Fe");
    b = bankOf(full);
    QCOMPARE(b.ElementNames.count(), 6);
}

void TestTaskBank::missingFileGivesEmptyTables() {
    QTemporaryDir dir;
    const TaskBank b = TaskBank::LoadTaskBank(dir.filePath(QStringLiteral("fehlt.dat")));
    QVERIFY(!b.fileRead);
    for (int s = 0; s < TaskBank::SectionCount; ++s) {
        QCOMPARE(b.count(TaskBank::Section(s)), 0);
        QCOMPARE(b.basicCount(TaskBank::Section(s)), 0);
    }
}

void TestTaskBank::loadsBankSavedAsUtf8() {
    QTemporaryDir dir;
    QStringList lines = syntheticBank(6, 2);
    lines[2] = QStringLiteral("Jürgenium*Jürgen");
    const QString text = lines.join(QStringLiteral("\n")) + u'\n';
    const struct {
        const char* name;
        QByteArray bytes;
    } variants[] = {
        {"cp1252 crlf", cp1252Lines(lines)},
        {"utf8 lf", text.toUtf8()},
        {"utf8 bom crlf", QByteArray("\xEF\xBB\xBF") + lines.join(QStringLiteral("\r\n")).toUtf8()},
        {"utf16",
         [&] {
             QByteArray b("\xFF\xFE");
             b.append(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
             return b;
         }()},
    };
    for (const auto& v : variants) {
        const QString path = dir.filePath(QString::fromLatin1(v.name));
        QVERIFY(writeFile(path, v.bytes));
        const TaskBank b = TaskBank::LoadTaskBank(path);
        QVERIFY2(b.fileRead, v.name);
        QCOMPARE(b.ElementNames.count(), 8);
        QCOMPARE(b.ElementNames.basicCount, 6); // the "ææ" mark was recognised
        QCOMPARE(b.ElementNames[1].Name.Item(1), QStringLiteral("Jürgenium"));
        QCOMPARE(b.AmountSubstances.basicCount, 6);
    }
}

void TestTaskBank::decodesAllOfWindows1252() {
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all.append(char(i));
    const QString text = LegacyText::decodeWindows1252(all);
    QCOMPARE(text.size(), 256);
    QCOMPARE(text.at(0x80), QChar(0x20AC));
    QCOMPARE(text.at(0x81), QChar(0x0081));
    QCOMPARE(text.at(0x8A), QChar(0x0160));
    QCOMPARE(text.at(0x9F), QChar(0x0178));
    QCOMPARE(text.at(0xE6), QChar(0x00E6));
    QCOMPARE(text.at(0xB7), QChar(0x00B7));
    QCOMPARE(LegacyText::encodeWindows1252(text), all);
    LegacyText::Encoding found{};
    LegacyText::decode(all, &found);
    QCOMPARE(found, LegacyText::Encoding::Windows1252);
    // "ææ" in cp1252 is not valid UTF-8 and must not be taken for it.
    QCOMPARE(LegacyText::decode(QByteArray("\xE6\xE6\r\n")), QStringLiteral(u"\u00E6\u00E6\r\n"));
}

void TestTaskBank::buildsTermLists() {
    const TermList one = TermList::Build(u"Natrium", u"*");
    QCOMPARE(one.count(), 1);
    QCOMPARE(one.Item(1), QStringLiteral("Natrium"));
    QCOMPARE(one.Join(u"*", u"*", u"*"), QStringLiteral("*Natrium*"));
    const TermList two = TermList::Build(u"Iod*Jod", u"*");
    QCOMPARE(two.Join(u"*", u"*", u"*"), QStringLiteral("*Iod*Jod*"));
    QCOMPARE(two.Join(u"", u"|", u""), QStringLiteral("Iod|Jod"));
    QVERIFY(two.Join(u"*", u"*", u"*").contains(QStringLiteral("*Jod*")));
    QVERIFY(!two.Join(u"*", u"*", u"*").contains(QStringLiteral("*Jo*")));
    QCOMPARE(two.Item(3), QString());
    QCOMPARE(TermList::Build(u"a**b", u"*").count(), 3);
}

QTEST_APPLESS_MAIN(TestTaskBank)
#include "test_task_bank.moc"
