#include "TestSupport.h"

#include <QTemporaryDir>

namespace {

// A bank written as one text, one line per "|", that holds `given` sections;
// empty ones follow up to the ninth.
TaskBank bankText(const QString& text, int given) {
    QStringList lines = text.split(u'|');
    for (int s = given; s < 9; ++s)
        lines << QStringLiteral("Abschnitt") << QStringLiteral("#") << QStringLiteral("@");
    return bankOf(lines);
}

} // namespace

class TestTaskBank : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readsSectionsAndBasicCounts() {
        const TaskBank bank = bankOf(syntheticBank(6, 3));
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
        QCOMPARE(bank.Definitions[4].Definition.trimmed(), QStringLiteral("Definition 4"));
        QCOMPARE(bank.IonCharges[1].Charge, std::int16_t(-2));
        QVERIFY(bank.Statements[1].IsTrue && !bank.Statements[2].IsTrue);
        QCOMPARE(bank.Equations[5].Equation, QStringLiteral("@5A+@1B=@1C5"));
        QVERIFY(!bank.Substances[1].Lead.has_value());
        QCOMPARE(bank.Substances[1].SecondTerm->Item(2), QStringLiteral("X^-"));
        QCOMPARE(bank.AmountSubstances[7].Second, QStringLiteral("0.7"));
        QCOMPARE(bank.ElementNames.lineOf(1), 3);
        // Only "J" is true, in any case and with blanks around.
        QVERIFY(TaskBank::IsTrue(u" j ") && !TaskBank::IsTrue(u"Ja") && !TaskBank::IsTrue(u""));

        // A file that cannot be read gives empty tables.
        QTemporaryDir dir;
        const TaskBank missing = TaskBank::LoadTaskBank(dir.filePath(QStringLiteral("fehlt.dat")));
        QVERIFY(!missing.fileRead);
        for (int s = 0; s < TaskBank::SectionCount; ++s)
            QCOMPARE(missing.count(TaskBank::Section(s)), 0);
    }
    void readsMarksAndOddLayouts() {
        // Header lines are skipped up to "#"; a section without a mark keeps 0;
        // the later of two marks wins; a mark first gives 0.
        const TaskBank b = bankText("Titel|# kein Ende|#|Eisen|Fe|ææ|Gold|Au|ææ|Zinn|Sn|@|"
                                    "Zahlsilben|#|1|mono|@|Massen|#|ææ|Wasser|18.0|H2O|@",
                                    3);
        QVERIFY(b.ElementNames.count() == 3 && b.ElementNames.basicCount == 2);
        QCOMPARE(b.layout[0].levelMarkLines.size(), 2);
        QVERIFY(b.NumberSyllables.count() == 1 && b.NumberSyllables.basicCount == 0);
        QVERIFY(b.MolarMassSubstances.count() == 1 && b.MolarMassSubstances.basicCount == 0);

        // Marks count only as the first line of a record: "@" and "ææ" as a
        // symbol are data, "@ " or " @" starts a record, "#" inside is data.
        const TaskBank m = bankText("Elemente|#|Eisen|@|Gold|ææ|@ |X|#|Y| @|Z|@", 1);
        QCOMPARE(m.ElementNames.count(), 5);
        QCOMPARE(m.ElementNames[1].Symbol, QStringLiteral("@"));
        QCOMPARE(m.ElementNames[2].Symbol, kLevelMark);
        QCOMPARE(m.ElementNames[3].Name.Item(1), QStringLiteral("@ "));
        QCOMPARE(m.ElementNames[4].Name.Item(1), QStringLiteral("#"));
        QCOMPARE(m.ElementNames[5].Name.Item(1), QStringLiteral(" @"));
        QCOMPARE(m.ElementNames.basicCount, 0);
        QCOMPARE(m.layout[8].endLine, 13 + 8 * 3);

        // Cut inside a record: the cut record is left out and noted.
        const TaskBank cut = bankText("E|#|Eisen|Fe|Gold", 9);
        QCOMPARE(cut.ElementNames.count(), 1);
        QCOMPARE(cut.layout[0].truncatedAtLine, 5);
        QCOMPARE(cut.layout[0].endLine, 0);
        // No "#" at all, a header that never ends, an empty file, a lone mark.
        for (const char* text : {"nur Text", "", "ææ", "#|Eisen"}) {
            const TaskBank odd = bankText(QString::fromUtf8(text), 9);
            for (int s = 0; s < TaskBank::SectionCount; ++s)
                QVERIFY(odd.count(TaskBank::Section(s)) <= 1);
        }
        // Anything after the ninth "@" is never read.
        QCOMPARE(bankOf(syntheticBank(6, 0) << "#"
                                            << "Eisen"
                                            << "Fe")
                     .ElementNames.count(),
                 6);
    }
    void cutsPadsAndReadsNumbers() {
        // Texts are cut or padded to their width; numbers are read leniently,
        // 16-bit ones rounded and 0 when out of range, masses up to a comma.
        const TaskBank b =
            bankText(QStringLiteral("E|#|@|Z|#|3.5|x|2.5|x|-2.5|x|40000|x|-32768|x|"
                                    "32767.5|x|abc|x| 12 |x|1e2|x|7,9|x|@|M|#|") +
                         QString(45, u'n') + "|58,4|X|Ab|1e39|Y|Stoff| 18.02|F|@|D|#|Säure|" +
                         QString(130, u'd') + "|@",
                     4);
        const std::int16_t numbers[] = {4, 2, -2, 0, -32768, 0, 0, 12, 100, 7};
        QCOMPARE(b.NumberSyllables.count(), 10);
        for (int i = 0; i < 10; ++i)
            QCOMPARE(b.NumberSyllables[i + 1].Number, numbers[i]);
        QCOMPARE(b.MolarMassSubstances[1].Name, QString(40, u'n'));
        QCOMPARE(b.MolarMassSubstances[2].Name, QStringLiteral("Ab") + QString(38, u' '));
        QCOMPARE(b.MolarMassSubstances[1].MolarMass, 58.0f);
        QCOMPARE(b.MolarMassSubstances[2].MolarMass, 0.0f);
        QCOMPARE(b.MolarMassSubstances[3].MolarMass, 18.02f);
        QCOMPARE(b.Definitions[1].Term, QStringLiteral("Säure") + QString(15, u' '));
        QCOMPARE(b.Definitions[1].Definition.size(), 120);
    }
    void loadsFilesInAnyEncoding() {
        // All 256 bytes of Windows-1252 there and back.
        QByteArray all;
        for (int i = 0; i < 256; ++i)
            all.append(char(i));
        const QString text = LegacyText::decodeWindows1252(all);
        QCOMPARE(text.size(), 256);
        QCOMPARE(text.at(0x80), QChar(0x20AC));
        QCOMPARE(text.at(0x81), QChar(0x0081));
        QCOMPARE(text.at(0x9F), QChar(0x0178));
        QCOMPARE(LegacyText::encodeWindows1252(text), all);
        LegacyText::Encoding found{};
        LegacyText::decode(all, &found);
        QCOMPARE(found, LegacyText::Encoding::Windows1252);
        // "ææ" in cp1252 is not valid UTF-8 and must not be taken for it.
        QCOMPARE(LegacyText::decode(QByteArray("\xE6\xE6\r\n")),
                 QStringLiteral(u"\u00E6\u00E6\r\n"));

        // The same bank saved by other editors.
        QTemporaryDir dir;
        QStringList lines = syntheticBank(6, 2);
        lines[2] = QStringLiteral("Jürgenium*Jürgen");
        const QString lf = lines.join(QStringLiteral("\n")) + u'\n';
        QByteArray utf16("\xFF\xFE");
        utf16.append(reinterpret_cast<const char*>(lf.utf16()), lf.size() * 2);
        QList<QByteArray> variants{
            cp1252Lines(lines), lf.toUtf8(),
            QByteArray("\xEF\xBB\xBF") + lines.join(QStringLiteral("\r\n")).toUtf8(), utf16};
        // Windows-1252 beginning with "ÿ" or "þ", which is no UTF-16 mark.
        for (const char* start : {"ÿ", "þ"}) {
            QStringList title = lines;
            title[0].prepend(QString::fromUtf8(start));
            variants << cp1252Lines(title);
        }
        for (int v = 0; v < variants.size(); ++v) {
            const QString path = dir.filePath(QString::number(v));
            QVERIFY(writeFile(path, variants[v]));
            const TaskBank b = TaskBank::LoadTaskBank(path);
            QVERIFY2(b.fileRead, qPrintable(path));
            QCOMPARE(b.ElementNames.count(), 8);
            QCOMPARE(b.ElementNames.basicCount, 6); // the "ææ" mark was recognised
            QCOMPARE(b.ElementNames[1].Name.Item(1), QStringLiteral("Jürgenium"));
            QCOMPARE(b.AmountSubstances.basicCount, 6);
        }
    }
    void buildsTermLists() {
        const TermList one = TermList::Build(u"Natrium", u"*");
        QCOMPARE(one.count(), 1);
        QCOMPARE(one.Join(u"*", u"*", u"*"), QStringLiteral("*Natrium*"));
        const TermList two = TermList::Build(u"Iod*Jod", u"*");
        QCOMPARE(two.Item(1), QStringLiteral("Iod"));
        QCOMPARE(two.Join(u"*", u"*", u"*"), QStringLiteral("*Iod*Jod*"));
        QCOMPARE(two.Join(u"", u"|", u""), QStringLiteral("Iod|Jod"));
        QCOMPARE(two.Item(3), QString());
        QCOMPARE(TermList::Build(u"a**b", u"*").count(), 3);
    }
};

QTEST_MAIN(TestTaskBank)
#include "test_task_bank.moc"
