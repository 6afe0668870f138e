// What the session reads and draws with: numbers and texts read as the old
// runtime read them, the random draw, names.ini with its names and level
// (its encodings go through the task bank's reader, any bytes at all through
// the names_file fuzz target), and the task bank itself; then the shipped
// bank as a class meets it: first-year basics at the normal level, the harder
// topics only in the expert part, no normal definition that leans on a term
// only experts are asked, and the accepted spellings.
#include "TestSupport.h"
#include "session/NamesFile.h"
#include "session/TextRules.h"

#include <map>

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

class TestSession : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readsLeadingNumbers_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("value");
        dataRow("plain", "58.4", 58.4);
        dataRow("comma stops", "58,4", 58.0);
        dataRow("blanks around", "  12  ", 12.0);
        dataRow("blanks inside", "1 000", 1000.0);
        dataRow("sign blank", "- 3", -3.0);
        dataRow("point first", ".5", 0.5);
        dataRow("exponent", "5E-1", 0.5);
        dataRow("exponent without digits", "1E", 1.0);
        dataRow("exponent sign only", "2E+x", 2.0);
        dataRow("fraction stops", "1/2", 1.0);
        dataRow("second point stops", "1.5.3", 1.5);
        dataRow("empty", "", 0.0);
        dataRow("sign only", "-", 0.0);
        dataRow("exponent alone", "E5", 0.0);
        dataRow("tab and newline", "\t3\n", 3.0);
        dataRow("huge", "1e400", HUGE_VAL);
    }
    void readsLeadingNumbers() {
        QFETCH(QString, text);
        QFETCH(double, value);
        QCOMPARE(LeadingValue(text), value);
    }
    void parseDecimalChangesCallersText() {
        // How answers read as numbers is tested through NumberAnswer; here only
        // that the caller's text is changed on the way.
        QString text = QStringLiteral("1,5e3");
        QCOMPARE(ParseDecimal(text), 1500.0f);
        QCOMPARE(text, QStringLiteral("1.5E3"));
        QString unit = QStringLiteral("58,4 g");
        QCOMPARE(ParseDecimal(unit), 58.4f);
        QCOMPARE(unit, QStringLiteral("58.4 g"));
    }
    void canonicalAndStrip() {
        QCOMPARE(CanonicalText(u"  natrium  "), QStringLiteral("NATRIUM"));
        QCOMPARE(CanonicalText(u"\tx "), QStringLiteral("\tX")); // only blanks are cut
        QCOMPARE(
            StripBlanks(QStringLiteral("@2 H2 + @1 O2") + QChar(u'\0') + QStringLiteral("= @2H2O")),
            QStringLiteral("@2H2+@1O2=@2H2O"));
        QCOMPARE(TrimRightBlanks(u"Na   ").toString(), QStringLiteral("Na"));
        QCOMPARE(TrimBlanks(u"   ").toString(), QString());
    }
    void writesNumbersAsTheOldRuntime() {
        QCOMPARE(NumberWithSignSpace(12), QStringLiteral(" 12"));
        QCOMPARE(NumberWithSignSpace(0), QStringLiteral(" 0"));
        QCOMPARE(NumberWithSignSpace(-3), QStringLiteral("-3"));
        QCOMPARE(SingleToText(58.4f), QStringLiteral(" 58.4"));
        QCOMPARE(SingleToText(180.2f), QStringLiteral(" 180.2"));
        QCOMPARE(SingleToText(-0.25f), QStringLiteral("-0.25"));
        QCOMPARE(SingleToText(1234567.0f), QStringLiteral(" 1234567"));
    }
    void staysInRangeAndAvoidsExclusions() {
        ClockRandomSource source;
        for (int i = 0; i < 2000; ++i) {
            const int n = RandomBetween(source, 10, 2, 4, 6, 8, 10, 0);
            QVERIFY(n >= 1 && n <= 10);
            QVERIFY(n % 2 == 1);
        }
        for (int i = 0; i < 200; ++i)
            QCOMPARE(RandomBetween(source, 3, 1, 2, 0, 0, 0, 0), 3);
        for (int i = 0; i < 200; ++i)
            QCOMPARE(RandomBetween(source, 1), 1);
        // Every admissible value turns up.
        std::map<int, int> seen;
        for (int i = 0; i < 3000; ++i)
            ++seen[RandomBetween(source, 7, 3)];
        QCOMPARE(int(seen.size()), 6);
        QVERIFY(!seen.count(3));
    }
    void scalesTheDrawToItsRange() {
        // n = whole part of (max + 1) * r, then clamped to 1..max.
        FixedRandomSource source({0.0, 0.19, 0.2, 0.5, 0.999999});
        QCOMPARE(RandomBetween(source, 4), 1); // 0   -> 0 -> 1
        QCOMPARE(RandomBetween(source, 4), 1); // 0.95 -> 0 -> 1
        QCOMPARE(RandomBetween(source, 4), 1); // 1.0 -> 1
        QCOMPARE(RandomBetween(source, 4), 2); // 2.5 -> 2
        QCOMPARE(RandomBetween(source, 4), 4); // 4.99 -> 4
    }
    void oneComesUpTwiceAsOften() {
        ClockRandomSource source;
        std::map<int, int> seen;
        const int draws = 60000;
        for (int i = 0; i < draws; ++i)
            ++seen[RandomBetween(source, 5)];
        // 1 gets 2/6 of the draws, every other value 1/6.
        const double one = seen[1];
        for (int v = 2; v <= 5; ++v) {
            const double ratio = one / seen[v];
            QVERIFY2(ratio > 1.7 && ratio < 2.3, qPrintable(QString::number(ratio)));
        }
    }
    void impossibleDrawsReturnAtOnce() {
        FixedRandomSource source({0.5});
        QCOMPARE(RandomBetween(source, 1, 1), 0);
        QCOMPARE(RandomBetween(source, 0), 0);
        QCOMPARE(RandomBetween(source, 3, 1, 2, 3), 0);
        QCOMPARE(source.draws, 0);
        // Below 1 the clamping yields max itself when that is not excluded.
        QCOMPARE(RandomBetween(source, 0, 1, 2, 3, 4, 5, 6), 0);
        QCOMPARE(RandomBetween(source, -2), -2);
    }
    void reseedsOncePerCall() {
        // A redraw after an exclusion takes the next value without reseeding.
        FixedRandomSource source({0.1, 0.5});
        QCOMPARE(RandomBetween(source, 9, 1), 5);
        QCOMPARE(source.reseeds, 1);
        QCOMPARE(source.draws, 2);
    }
    void keepsOddNamesExactly() {
        QTemporaryDir dir;
        const QStringList odd{QStringLiteral("Jürgen Äßler"),     QStringLiteral("a=b"),
                              QStringLiteral("[Namen]"),          QStringLiteral("x;y"),
                              QStringLiteral("\"Zitat\" 'so'"),   QString(200, u'z'),
                              QStringLiteral("  Anna  "),         QStringLiteral("back\\slash\\n"),
                              QStringLiteral("DIFFICULTY=5"),     QStringLiteral("Name=Name"),
                              QStringLiteral("; kein Kommentar"), QStringLiteral("tab\there"),
                              QStringLiteral("€ und Œ"),          QStringLiteral("zeile\r\nzwei"),
                              QStringLiteral("AUSWERTUNG=/tmp")};
        NamesFile file(dir.filePath(QStringLiteral("names.ini")));
        for (const QString& n : odd)
            QVERIFY(file.addName(n));
        QVERIFY(!file.addName(QStringLiteral("a=b"))); // no duplicates
        file.setDifficulty(1);
        // The overview's folder, beside the level.
        const QString folder = QStringLiteral("/srv/Schule/Ergebnisse 8b;\\ä\nx");
        file.setOverviewFolder(folder);
        QVERIFY(file.save());

        NamesFile again(file.path());
        QVERIFY(again.load());
        QCOMPARE(again.names(), odd);
        QCOMPARE(again.difficulty(), 1);
        QCOMPARE(again.overviewFolder(), folder);
    }
    void survivesHandEditedFiles() {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("names.ini"));
        QByteArray junk =
            "\x01\x02garbage\r\n[Einstellungen]\r\nDIFFICULTY=abc\r\n=\r\nName=\r\n"
            "[Namen]\r\nName=Anna\r\nBob\r\n\x7f\x03 bin\xc3\r\n   \r\nName=Carla=C\r\n"
            "[Anderes]\r\nirgendwas\r\nName=Dora\r\n";
        QVERIFY(writeFile(path, junk));
        NamesFile file(path);
        QVERIFY(file.load());
        QCOMPARE(file.names(), (QStringList{QStringLiteral("Anna"), QStringLiteral("Bob"),
                                            QStringLiteral("Carla=C"), QStringLiteral("Dora")}));
        QCOMPARE(file.difficulty(), -1);
    }
    void removingOneKeepsTheOthers() {
        QTemporaryDir dir;
        NamesFile file(dir.filePath(QStringLiteral("names.ini")));
        for (const char* n : {"Anna", "Bob", " Bob", "Carla"})
            file.addName(QString::fromUtf8(n));
        file.setDifficulty(0);
        QVERIFY(file.save());
        QVERIFY(file.removeName(QStringLiteral("Bob")));
        QVERIFY(!file.removeName(QStringLiteral("Niemand")));
        QVERIFY(file.save());
        NamesFile again(file.path());
        again.load();
        QCOMPARE(again.names(), (QStringList{QStringLiteral("Anna"), QStringLiteral(" Bob"),
                                             QStringLiteral("Carla")}));
        QCOMPARE(again.difficulty(), 0);
    }
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
    void initTestCase() {
        m_bank = TaskBank::LoadTaskBank(QStringLiteral(LABQUIZ_SOURCE_DATA_DIR "/labquiz.dat"));
        QVERIFY(m_bank.count(TaskBank::DefinitionsSection) > 40);
    }
    void normalPartsKeepTheirSize() {
        // The normal parts before the first-year basics were moved in; every
        // section keeps an expert part.
        const int before[] = {42, 10, 32, 25, 23, 40, 28, 34, 24};
        for (int s = 0; s < TaskBank::SectionCount; ++s) {
            const auto section = TaskBank::Section(s);
            QVERIFY2(m_bank.basicCount(section) >= before[s],
                     qPrintable(TaskBank::sectionName(section)));
            QVERIFY(m_bank.basicCount(section) < m_bank.count(section));
        }
    }
    void levels_data() {
        QTest::addColumn<int>("section");
        QTest::addColumn<QString>("text"); // the whole first field, or "~" and a piece of it
        QTest::addColumn<bool>("normal");
        for (const char* t : {"Gemisch", "Dichte", "Edelgas", "Ordnungszahl", "Kation", "Anion"})
            dataRow(t, int(TaskBank::DefinitionsSection), QString::fromUtf8(t), true);
        for (const char* t : {"Säure", "Redoxreaktion", "Isotop"})
            dataRow(t, int(TaskBank::DefinitionsSection), QString::fromUtf8(t), false);
        for (const char* f : {"NaF", "CaF2", "Li2O"})
            dataRow(f, int(TaskBank::SubstancesSection), QString::fromUtf8(f), true);
        dataRow("Glucose", int(TaskBank::MolarMassSubstancesSection), "~Glucose", false);
        dataRow("Pentahydrat", int(TaskBank::MolarMassSubstancesSection), "~Pentahydrat", false);
        dataRow("Stoffmenge Hydrat", int(TaskBank::AmountSubstancesSection), "~·5H2O", false);
    }
    void levels() {
        QFETCH(int, section);
        QFETCH(QString, text);
        QFETCH(bool, normal);
        const auto s = TaskBank::Section(section);
        int found = 0;
        for (int i = 1; i <= m_bank.count(s); ++i) {
            const QString k = key(s, i);
            if (text.startsWith(u'~') ? k.contains(text.mid(1)) : k.section(u'*', 0, 0) == text) {
                ++found;
                QVERIFY2((i <= m_bank.basicCount(s)) == normal, qPrintable(k));
            }
        }
        QVERIFY(found > 0);
    }
    void normalDefinitionsUseNormalTermsOnly() {
        // A term with the usual German endings, but not as the start of a
        // compound: "Periode" must not match "Periodensystem".
        QStringList misuses;
        for (int e = m_bank.Definitions.basicCount + 1; e <= m_bank.Definitions.count(); ++e) {
            const QString term = TrimBlanks(m_bank.Definitions[e].Term).toString();
            const QRegularExpression used(QStringLiteral("(?<!\\w)%1(e|en|n|s|es)?(?!\\w)")
                                              .arg(QRegularExpression::escape(term)),
                                          QRegularExpression::CaseInsensitiveOption |
                                              QRegularExpression::UseUnicodePropertiesOption);
            for (int b = 1; b <= m_bank.Definitions.basicCount; ++b) {
                const QString text = m_bank.Definitions[b].Definition;
                if (text.contains(used))
                    misuses << QStringLiteral("%1: %2").arg(term, TrimBlanks(text).toString());
            }
        }
        QVERIFY2(misuses.isEmpty(), qPrintable(misuses.join(u'\n')));
    }
    void acceptedSpellings_data() {
        QTest::addColumn<int>("section");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("alsoAccepted");
        dataRow("Vanadin", int(TaskBank::ElementNamesSection), "Vanadium", "Vanadin");
        dataRow("Natriumacetat", int(TaskBank::SubstancesSection), "CH3COONa", "NaCH3COO");
        dataRow("Natriumhypochlorit", int(TaskBank::SubstancesSection), "NaClO", "NaOCl");
    }
    void acceptedSpellings() {
        QFETCH(int, section);
        QFETCH(QString, shown);
        QFETCH(QString, alsoAccepted);
        const auto s = TaskBank::Section(section);
        QStringList spellings;
        for (int i = 1; i <= m_bank.count(s) && spellings.value(0) != shown; ++i)
            spellings = key(s, i).split(u'*');
        QCOMPARE(spellings.value(0), shown);
        QVERIFY2(spellings.contains(alsoAccepted), qPrintable(spellings.join(u'*')));
    }

private:
    // The first field of record i of section s, as a teacher would find it.
    QString key(TaskBank::Section s, int i) const {
        switch (s) {
        case TaskBank::ElementNamesSection:
            return m_bank.ElementNames[i].Name.items().join(u'*');
        case TaskBank::DefinitionsSection:
            return TrimBlanks(m_bank.Definitions[i].Term).toString();
        case TaskBank::MolarMassSubstancesSection:
            return m_bank.MolarMassSubstances[i].Name;
        case TaskBank::SubstancesSection:
            return m_bank.Substances[i].Formula ? m_bank.Substances[i].Formula->items().join(u'*')
                                                : QString();
        default:
            return m_bank.AmountSubstances[i].First;
        }
    }

    TaskBank m_bank;
};

QTEST_MAIN(TestSession)
#include "test_session.moc"
