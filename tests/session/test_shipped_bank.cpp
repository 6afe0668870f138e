#include "TestSupport.h"
#include "session/TextRules.h"

// The shipped task bank as a class meets it: first-year basics at the normal
// level, the harder topics only in the expert part, no normal definition
// that leans on a term only experts are asked, and the accepted spellings.
class TestShippedBank : public QObject {
    Q_OBJECT
private Q_SLOTS:
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

QTEST_MAIN(TestShippedBank)
#include "test_shipped_bank.moc"
