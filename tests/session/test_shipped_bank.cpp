#include "TestSupport.h"
#include "session/TaskBank.h"
#include "session/TextRules.h"

#include <QRegularExpression>
#include <QtTest>

// The shipped task bank as a class meets it: first-year basics at the normal
// level, the harder topics only in the expert part, no normal definition
// that leans on a term only experts are asked, and the accepted spellings.
class TestShippedBank : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void normalPartKeepsItsSize_data();
    void normalPartKeepsItsSize();
    void definitionLevels_data();
    void definitionLevels();
    void normalDefinitionsUseNormalTermsOnly();
    void substanceLevels_data();
    void substanceLevels();
    void acceptedSpellings_data();
    void acceptedSpellings();

private:
    // Index of the record whose key (trimmed) is `key`, or 0.
    int definitionIndex(const QString& term) const;

    TaskBank m_bank;
};

void TestShippedBank::initTestCase() {
    m_bank = TaskBank::LoadTaskBank(QStringLiteral(LABQUIZ_SOURCE_DATA_DIR "/labquiz.dat"));
    QVERIFY(m_bank.count(TaskBank::DefinitionsSection) > 40);
}

int TestShippedBank::definitionIndex(const QString& term) const {
    for (int i = 1; i <= m_bank.Definitions.count(); ++i) {
        if (TrimBlanks(m_bank.Definitions[i].Term) == term)
            return i;
    }
    return 0;
}

void TestShippedBank::normalPartKeepsItsSize_data() {
    QTest::addColumn<int>("section");
    QTest::addColumn<int>("atLeast");
    // The normal parts before the first-year basics were moved in.
    const int before[] = {42, 10, 32, 25, 23, 40, 28, 34, 24};
    for (int s = 0; s < TaskBank::SectionCount; ++s)
        QTest::newRow(qPrintable(TaskBank::sectionName(TaskBank::Section(s)))) << s << before[s];
}

void TestShippedBank::normalPartKeepsItsSize() {
    QFETCH(int, section);
    QFETCH(int, atLeast);
    QVERIFY(m_bank.basicCount(TaskBank::Section(section)) >= atLeast);
    QVERIFY(m_bank.basicCount(TaskBank::Section(section)) <
            m_bank.count(TaskBank::Section(section)));
}

void TestShippedBank::definitionLevels_data() {
    QTest::addColumn<QString>("term");
    QTest::addColumn<bool>("normal");
    for (const char* t : {"Reinstoff", "Gemisch", "Lösung", "Dichte", "Schmelztemperatur",
                          "Siedetemperatur", "Oxid", "Analyse", "Synthese", "Edelgas",
                          "Alkalimetall", "Halogen", "Ordnungszahl", "Kation", "Anion"})
        QTest::newRow(t) << QString::fromUtf8(t) << true;
    for (const char* t : {"Säure", "Base", "Oxidation", "Reduktion", "Redoxreaktion", "Isotop"})
        QTest::newRow(t) << QString::fromUtf8(t) << false;
}

void TestShippedBank::definitionLevels() {
    QFETCH(QString, term);
    QFETCH(bool, normal);
    const int i = definitionIndex(term);
    QVERIFY2(i > 0, qPrintable(term));
    QCOMPARE(i <= m_bank.Definitions.basicCount, normal);
}

void TestShippedBank::normalDefinitionsUseNormalTermsOnly() {
    // A term with the usual German endings, but not as the start of a
    // compound: "Periode" must not match "Periodensystem".
    QStringList misuses;
    for (int e = m_bank.Definitions.basicCount + 1; e <= m_bank.Definitions.count(); ++e) {
        const QString term = TrimBlanks(m_bank.Definitions[e].Term).toString();
        const QRegularExpression used(
            QStringLiteral("(?<!\\w)%1(e|en|n|s|es)?(?!\\w)").arg(QRegularExpression::escape(term)),
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

void TestShippedBank::substanceLevels_data() {
    QTest::addColumn<int>("section");
    QTest::addColumn<QString>("text"); // a piece of the record's first field
    QTest::addColumn<bool>("normal");
    const int salts = TaskBank::SubstancesSection;
    for (const char* f : {"NaF", "MgS", "CaF2", "Li2O"})
        QTest::newRow(f) << salts << QString::fromUtf8(f) << true;
    const int masses = TaskBank::MolarMassSubstancesSection;
    dataRow("Glucose", masses, "Glucose", false);
    dataRow("Saccharose", masses, "Saccharose", false);
    dataRow("Pentahydrat", masses, "Pentahydrat", false);
    dataRow("Dihydrat", masses, "Dihydrat", false);
    const int amounts = TaskBank::AmountSubstancesSection;
    dataRow("Stoffmenge Glucose", amounts, "Glucose", false);
    dataRow("Stoffmenge Hydrat", amounts, QStringLiteral("·5H2O"), false);
}

void TestShippedBank::substanceLevels() {
    QFETCH(int, section);
    QFETCH(QString, text);
    QFETCH(bool, normal);
    const auto s = TaskBank::Section(section);
    int found = 0;
    for (int i = 1; i <= m_bank.count(s); ++i) {
        QString key;
        if (s == TaskBank::SubstancesSection)
            key = m_bank.Substances[i].Formula ? m_bank.Substances[i].Formula->items().value(0)
                                               : QString();
        else if (s == TaskBank::MolarMassSubstancesSection)
            key = m_bank.MolarMassSubstances[i].Name;
        else
            key = m_bank.AmountSubstances[i].First;
        const bool match = s == TaskBank::SubstancesSection ? key == text : key.contains(text);
        if (!match)
            continue;
        ++found;
        QVERIFY2((i <= m_bank.basicCount(s)) == normal, qPrintable(key));
    }
    QVERIFY2(found > 0, qPrintable(text));
}

void TestShippedBank::acceptedSpellings_data() {
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("alsoAccepted");
    dataRow("Vanadin", "Vanadium", "Vanadin");
    dataRow("Natriumacetat", "CH3COONa", "NaCH3COO");
    dataRow("Natriumhypochlorit", "NaClO", "NaOCl");
}

void TestShippedBank::acceptedSpellings() {
    QFETCH(QString, shown);
    QFETCH(QString, alsoAccepted);
    QStringList list;
    for (int i = 1; i <= m_bank.ElementNames.count() && list.isEmpty(); ++i) {
        if (m_bank.ElementNames[i].Name.items().value(0) == shown)
            list = m_bank.ElementNames[i].Name.items();
    }
    for (int i = 1; i <= m_bank.Substances.count() && list.isEmpty(); ++i) {
        const auto& f = m_bank.Substances[i].Formula;
        if (f && f->items().value(0) == shown)
            list = f->items();
    }
    QVERIFY2(list.contains(alsoAccepted), qPrintable(list.join(u'*')));
}

QTEST_MAIN(TestShippedBank)
#include "test_shipped_bank.moc"
