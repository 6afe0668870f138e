#include "TestSupport.h"
#include "pages/TaskNames.h"

#include <functional>

// What a screen reader says for a task: the words of the task with the bank's
// padding gone, and after checking the verdict with the right answer.
class TestTaskNames : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void namesCarryTheTask_data();
    void namesCarryTheTask();
};

using Namer = std::function<QString()>;
Q_DECLARE_METATYPE(Namer)

void TestTaskNames::namesCarryTheTask_data() {
    QTest::addColumn<Namer>("namer");
    QTest::addColumn<QString>("expected");
    dataRow("Symbol", Namer([] { return TaskNames::symbolFor(u"Arsen   "); }),
            QStringLiteral("Symbol für Arsen"));
    dataRow("Name", Namer([] { return TaskNames::nameForSymbol(u" N "); }),
            QStringLiteral("Name zum Symbol N"));
    dataRow("Ion", Namer([] { return TaskNames::chargeOf(u"Oxid-Ion            "); }),
            QStringLiteral("Ladung des Oxid-Ions"));
    dataRow("kein -Ion", Namer([] { return TaskNames::chargeOf(u"Ammonium"); }),
            QStringLiteral("Ladung: Ammonium"));
    dataRow("Koeffizient", Namer([] { return TaskNames::coefficient(1, 2); }),
            QStringLiteral("Koeffizient 1 in Gleichung 2"));
    dataRow("Formel mit Tiefstellung", Namer([] { return TaskNames::nameForFormula(u"H2SO4"); }),
            QStringLiteral("Name zur Formel H\u2082SO\u2084"));
    dataRow("Ja zu Frage", Namer([] { return TaskNames::choiceFor(u"Ja", 3); }),
            QStringLiteral("Ja zu Frage 3"));
    dataRow("richtig", Namer([] { return TaskNames::verdict(true, u"Na"); }),
            QStringLiteral("richtig"));
    dataRow("falsch mit Lösung", Namer([] { return TaskNames::verdict(false, u"Natrium   "); }),
            QStringLiteral("falsch, richtig ist: Natrium"));
    dataRow("falsch mit Alternativen",
            Namer([] { return TaskNames::verdict(false, u"*tetra*tetr*"); }),
            QStringLiteral("falsch, richtig ist: tetra oder tetr"));
    dataRow("falsch ohne Lösung", Namer([] { return TaskNames::verdict(false, u"  "); }),
            QStringLiteral("falsch"));
}

void TestTaskNames::namesCarryTheTask() {
    QFETCH(Namer, namer);
    QFETCH(QString, expected);
    QCOMPARE(namer(), expected);
}

QTEST_MAIN(TestTaskNames)
#include "test_task_names.moc"
