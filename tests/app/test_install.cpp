#include "TestSupport.h"
#include "app/AppInfo.h"
#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QXmlStreamReader>

// What a school's administrator does: install the built program into a
// prefix and start it from there, and what another project does: pull the
// sources in with add_subdirectory or FetchContent.
class TestInstall : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void installsAndRunsFromPrefix();
    void usableAsSubproject_data();
    void usableAsSubproject();

private:
    // Both channels together, as a person at the terminal reads them.
    static ProgramRun
    run(const QString& program, const QStringList& arguments,
        const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment(),
        const QString& folder = QString()) {
        ProgramRun r = runProgram(program, arguments, environment, folder);
        r.out += r.err;
        return r;
    }
};

namespace {
const QString kAppId = QStringLiteral("de.laborix.LabQuiz");
}

void TestInstall::installsAndRunsFromPrefix() {
    for (const char* tool : {"desktop-file-validate", "appstreamcli"})
        QVERIFY2(!QStandardPaths::findExecutable(QLatin1String(tool)).isEmpty(),
                 qPrintable(QStringLiteral("%1 fehlt; tools/bootstrap installiert es")
                                .arg(QLatin1String(tool))));
    QTemporaryDir prefix;
    ProgramRun r = run(QStringLiteral(LABQUIZ_CMAKE),
                       {QStringLiteral("--install"), QStringLiteral(LABQUIZ_BUILD_DIR),
                        QStringLiteral("--prefix"), prefix.path()});
    QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.out));

    const QDir root(prefix.path());
    const QString program = root.filePath(QStringLiteral("bin/labquiz"));
    const QString desktop =
        root.filePath(QStringLiteral("share/applications/%1.desktop").arg(kAppId));
    const QString icon =
        root.filePath(QStringLiteral("share/icons/hicolor/scalable/apps/%1.svg").arg(kAppId));
    const QString metainfo =
        root.filePath(QStringLiteral("share/metainfo/%1.metainfo.xml").arg(kAppId));
    QVERIFY(QFileInfo(program).isExecutable());
    for (const QString& file : {desktop, icon, metainfo})
        QVERIFY2(QFileInfo(file).isFile(), qPrintable(file));

    // The desktop entry: valid, German, and pointing at what was installed.
    r = run(QStringLiteral("desktop-file-validate"), {desktop});
    QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.out));
    QVERIFY2(!r.out.contains(QStringLiteral("error")), qPrintable(r.out));
    QSettings entry(desktop, QSettings::IniFormat);
    entry.beginGroup(QStringLiteral("Desktop Entry"));
    QCOMPARE(entry.value(QStringLiteral("Name")).toString(), QStringLiteral("Laborix Test"));
    QVERIFY(entry.value(QStringLiteral("Comment")).toString().contains(QStringLiteral("Chemie")));
    QCOMPARE(entry.value(QStringLiteral("Exec")).toString(), QFileInfo(program).fileName());
    QCOMPARE(entry.value(QStringLiteral("Icon")).toString(), QFileInfo(icon).completeBaseName());
    QFile entryFile(desktop);
    QVERIFY(entryFile.open(QIODevice::ReadOnly));
    QVERIFY(entryFile.readAll().contains("\nCategories=Education;Science;Chemistry;\n"));

    // The metainfo: valid without the network, launching this desktop entry.
    r = run(QStringLiteral("appstreamcli"),
            {QStringLiteral("validate"), QStringLiteral("--no-net"), metainfo});
    QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.out));
    QFile meta(metainfo);
    QVERIFY(meta.open(QIODevice::ReadOnly));
    const QByteArray metaText = meta.readAll();
    QVERIFY(metaText.contains("<id>" + kAppId.toUtf8() + "</id>"));
    QVERIFY(metaText.contains(">" + QFileInfo(desktop).fileName().toUtf8() + "</launchable>"));

    // The icon is an SVG document.
    QFile svg(icon);
    QVERIFY(svg.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&svg);
    QVERIFY(xml.readNextStartElement());
    QCOMPARE(xml.name(), QStringLiteral("svg"));
    while (!xml.atEnd())
        xml.readNext();
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));

    // The installed program runs from the prefix, away from the sources:
    // its check without a display finds its data, and its window starts.
    QTemporaryDir data;
    r = run(program, {QStringLiteral("--check")}, withoutDisplay(data.path()), prefix.path());
    QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.out));
    QVERIFY(r.out.contains(QStringLiteral("keine Fehler")));
    QVERIFY(QFile::exists(QDir(data.path()).filePath(QStringLiteral("labquiz.dat"))));

    QTemporaryDir windowData;
    QProcessEnvironment env = withoutDisplay(windowData.path());
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("qt.multimedia*=false"));
    QProcess window;
    window.setProcessEnvironment(env);
    window.setWorkingDirectory(prefix.path());
    window.start(program, {});
    QVERIFY(window.waitForStarted());
    // The lock is taken once the main window has loaded.
    const QString lock = AppInfo(CommandLine(), env).lockPath();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(lock), 30000);
    QVERIFY(QFile::exists(QDir(windowData.path()).filePath(QStringLiteral("elements.dat"))));
    QTest::qWait(300);
    QCOMPARE(window.state(), QProcess::Running);
    window.kill();
    window.waitForFinished();
}

void TestInstall::usableAsSubproject_data() {
    QTest::addColumn<QString>("include");
    const QString source = QStringLiteral(LABQUIZ_SOURCE_DIR);
    dataRow("add_subdirectory", QStringLiteral("add_subdirectory(\"%1\" laborix)\n").arg(source));
    dataRow("FetchContent",
            QStringLiteral("include(FetchContent)\nFetchContent_Declare(laborix SOURCE_DIR "
                           "\"%1\")\nFetchContent_MakeAvailable(laborix)\n")
                .arg(source));
}

void TestInstall::usableAsSubproject() {
    QFETCH(QString, include);
    QTemporaryDir outer;
    // The outer project checks what it got: the program, at its own place,
    // reading its data from the pulled-in sources, without our tests.
    const QString lists =
        QStringLiteral("cmake_minimum_required(VERSION 3.21)\n"
                       "project(Schulrechner LANGUAGES CXX)\n") +
        include +
        QStringLiteral("if(NOT TARGET labquiz OR TARGET test_app OR TARGET labquiz_bench)\n"
                       "  message(FATAL_ERROR \"falsche Ziele\")\n"
                       "endif()\n"
                       "get_target_property(out labquiz RUNTIME_OUTPUT_DIRECTORY)\n"
                       "if(out STREQUAL CMAKE_BINARY_DIR)\n"
                       "  message(FATAL_ERROR \"labquiz landet im Baum des äußeren Projekts\")\n"
                       "endif()\n"
                       "get_target_property(defs labquiz_lib INTERFACE_COMPILE_DEFINITIONS)\n"
                       "if(NOT defs MATCHES \"LABQUIZ_SOURCE_DATA_DIR=\\\"%1/data\\\"\")\n"
                       "  message(FATAL_ERROR \"Datenordner falsch: ${defs}\")\n"
                       "endif()\n")
            .arg(QStringLiteral(LABQUIZ_SOURCE_DIR));
    QFile file(outer.filePath(QStringLiteral("CMakeLists.txt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(lists.toUtf8());
    file.close();
    const ProgramRun r = run(QStringLiteral(LABQUIZ_CMAKE),
                             {QStringLiteral("-S"), outer.path(), QStringLiteral("-B"),
                              outer.filePath(QStringLiteral("build")), QStringLiteral("-G"),
                              QStringLiteral(LABQUIZ_CMAKE_GENERATOR)});
    QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.out));
    QVERIFY(!r.out.contains(QStringLiteral("fehlt")));
}

QTEST_MAIN(TestInstall)
#include "test_install.moc"
