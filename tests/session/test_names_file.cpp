#include "TestSupport.h"
#include "session/NamesFile.h"

#include <QTemporaryDir>

// Names and the remembered level in names.ini; the file's encodings are
// read by the same reader as the task bank (see test_task_bank), and any
// bytes at all are the names_file fuzz target's.
class TestNamesFile : public QObject {
    Q_OBJECT
private Q_SLOTS:
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
};

QTEST_APPLESS_MAIN(TestNamesFile)
#include "test_names_file.moc"
