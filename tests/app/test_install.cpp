#include "TestSupport.h"
#include "app/AppInfo.h"

// What a school's administrator does: install the built program into a
// prefix and start it from there, or build the Debian package and look into
// it, and what another project does: pull the sources in with
// add_subdirectory or FetchContent.
class TestInstall : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void installsAndRunsFromPrefix();
    void debianPackage();
    void usableAsSubproject_data();
    void usableAsSubproject();

private:
    // The desktop entry, icon and metainfo under share/, pointing at program.
    static void checkMenuFiles(const QDir& share, const QString& program);
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

void TestInstall::checkMenuFiles(const QDir& share, const QString& program) {
    for (const char* tool : {"desktop-file-validate", "appstreamcli"})
        QVERIFY2(!QStandardPaths::findExecutable(QLatin1String(tool)).isEmpty(),
                 qPrintable(QStringLiteral("%1 fehlt; tools/bootstrap installiert es")
                                .arg(QLatin1String(tool))));
    const QString desktop = share.filePath(QStringLiteral("applications/%1.desktop").arg(kAppId));
    const QString icon =
        share.filePath(QStringLiteral("icons/hicolor/scalable/apps/%1.svg").arg(kAppId));
    const QString metainfo = share.filePath(QStringLiteral("metainfo/%1.metainfo.xml").arg(kAppId));
    for (const QString& file : {desktop, icon, metainfo})
        QVERIFY2(QFileInfo(file).isFile(), qPrintable(file));

    // The desktop entry: valid, German, and pointing at what was installed.
    ProgramRun r = run(QStringLiteral("desktop-file-validate"), {desktop});
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
}

void TestInstall::installsAndRunsFromPrefix() {
    QTemporaryDir prefix;
    ProgramRun r = run(QStringLiteral(LABQUIZ_CMAKE),
                       {QStringLiteral("--install"), QStringLiteral(LABQUIZ_BUILD_DIR),
                        QStringLiteral("--prefix"), prefix.path()});
    QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.out));

    const QDir root(prefix.path());
    const QString program = root.filePath(QStringLiteral("bin/labquiz"));
    QVERIFY(QFileInfo(program).isExecutable());
    checkMenuFiles(QDir(root.filePath(QStringLiteral("share"))), program);
    if (QTest::currentTestFailed())
        return;
    for (const char* file : {"share/man/man1/labquiz.1.gz", "share/doc/laborix-test/copyright",
                             "share/doc/laborix-test/changelog.Debian.gz"})
        QVERIFY2(QFileInfo(root.filePath(QLatin1String(file))).isFile(), file);
    // The example for /etc goes only into the package: a plain install must
    // not write outside its prefix (here it would change the test machine).
    QFile manifest(
        QDir(QStringLiteral(LABQUIZ_BUILD_DIR)).filePath(QStringLiteral("install_manifest.txt")));
    QVERIFY(manifest.open(QIODevice::ReadOnly));
    for (const QByteArray& line : manifest.readAll().split('\n'))
        QVERIFY2(line.isEmpty() || line.startsWith(QFile::encodeName(root.path())),
                 line.constData());

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

namespace {

// The fields of a control file: "Name: value" with continuation lines.
QMap<QString, QString> controlFields(const QString& text) {
    QMap<QString, QString> fields;
    QString last;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1Char(' ')) && !last.isEmpty()) {
            fields[last] += QLatin1Char('\n') + line;
        } else if (const qsizetype colon = line.indexOf(QLatin1Char(':')); colon > 0) {
            last = line.left(colon);
            fields[last] = line.mid(colon + 1).trimmed();
        }
    }
    return fields;
}

QByteArray gunzip(const QString& path) {
    QProcess gzip;
    gzip.start(QStringLiteral("gzip"), {QStringLiteral("-dc"), path});
    gzip.waitForFinished();
    return gzip.exitCode() == 0 ? gzip.readAllStandardOutput() : QByteArray();
}

} // namespace

void TestInstall::debianPackage() {
#ifdef LABQUIZ_SANITIZE
    QSKIP("Das Paket kommt aus dem normalen Build; aus dem Sanitizer-Build gebaut sagte es "
          "nichts über das ausgelieferte Paket.");
#endif
    for (const char* tool : {"dpkg-deb", "dpkg-shlibdeps", "file", "man", "gzip"})
        if (QStandardPaths::findExecutable(QLatin1String(tool)).isEmpty())
            QSKIP(qPrintable(QStringLiteral("%1 fehlt; tools/bootstrap installiert es "
                                            "(dpkg-dev, file, man-db)")
                                 .arg(QLatin1String(tool))));
    // CPack on the existing build, into a folder of its own.
    QTemporaryDir out;
    ProgramRun r =
        run(QStringLiteral(LABQUIZ_CPACK),
            {QStringLiteral("--config"),
             QDir(QStringLiteral(LABQUIZ_BUILD_DIR)).filePath(QStringLiteral("CPackConfig.cmake")),
             QStringLiteral("-B"), out.path()});
    QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.out));
    r = run(QStringLiteral("dpkg"), {QStringLiteral("--print-architecture")});
    const QString arch = r.out.trimmed();
    const QString version = QStringLiteral(LABQUIZ_VERSION "-1");
    const QString deb = out.filePath(QStringLiteral("laborix-test_%1_%2.deb").arg(version, arch));
    QVERIFY2(QFileInfo(deb).isFile(), qPrintable(QDir(out.path()).entryList().join(u' ')));

    // Control fields; the dependencies are dpkg-shlibdeps' work, so they
    // name the Qt libraries the program links against, with versions.
    // dpkg-deb's own channels apart: its standard output is parsed.
    const auto dpkgDeb = [&deb](QStringList arguments) {
        arguments.insert(1, deb);
        return runProgram(QStringLiteral("dpkg-deb"), arguments,
                          QProcessEnvironment::systemEnvironment());
    };
    r = dpkgDeb({QStringLiteral("--field")});
    QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.err));
    const QMap<QString, QString> fields = controlFields(r.out);
    QCOMPARE(fields.value(QStringLiteral("Package")), QStringLiteral("laborix-test"));
    QCOMPARE(fields.value(QStringLiteral("Version")), version);
    QCOMPARE(fields.value(QStringLiteral("Architecture")), arch);
    QCOMPARE(fields.value(QStringLiteral("Section")), QStringLiteral("education"));
    QCOMPARE(fields.value(QStringLiteral("Priority")), QStringLiteral("optional"));
    QVERIFY(fields.value(QStringLiteral("Maintainer")).contains(QLatin1Char('@')));
    const QString depends = fields.value(QStringLiteral("Depends"));
    for (const char* lib :
         {"libc6 (>=", "libstdc++6 (>=", "libqt6core6 (>=", "libqt6gui6 (>=", "libqt6widgets6 (>=",
          "libqt6printsupport6 (>=", "libqt6multimedia6 (>="})
        QVERIFY2(depends.contains(QLatin1String(lib)), qPrintable(lib + (u' ' + depends)));
    QVERIFY(!depends.contains(QStringLiteral("libqt6test")));
    const QString description = fields.value(QStringLiteral("Description"));
    const QString synopsis = description.section(QLatin1Char('\n'), 0, 0);
    QVERIFY2(synopsis.contains(QStringLiteral("Chemie")) &&
                 synopsis.contains(QStringLiteral("chemistry")) && synopsis.size() <= 80,
             qPrintable(synopsis));
    QVERIFY(description.contains(QStringLiteral("\n Laborix Test ist ein")));
    QVERIFY(description.contains(QStringLiteral("\n Laborix Test is a")));
    QVERIFY(description.contains(QStringLiteral("\n .\n")));

    // Exactly these files, owned by root, with the modes Debian expects; no
    // tests, benchmarks or screenshot tool.
    r = dpkgDeb({QStringLiteral("--contents")});
    QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.err));
    QMap<QString, QString> modes;
    for (const QString& line : r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList cols = line.simplified().split(QLatin1Char(' '));
        QVERIFY2(cols.size() >= 6, qPrintable(line));
        QCOMPARE(cols.at(1), QStringLiteral("root/root"));
        QString path = cols.at(5);
        path.remove(0, 1); // "./usr/bin" -> "/usr/bin"
        if (cols.at(0).startsWith(QLatin1Char('d')))
            QVERIFY2(cols.at(0) == QLatin1String("drwxr-xr-x"), qPrintable(line));
        else
            modes.insert(path, cols.at(0));
    }
    // Everything is data but the program.
    QMap<QString, QString> expected;
    for (const char* path :
         {"/usr/share/applications/de.laborix.LabQuiz.desktop",
          "/usr/share/icons/hicolor/scalable/apps/de.laborix.LabQuiz.svg",
          "/usr/share/metainfo/de.laborix.LabQuiz.metainfo.xml", "/usr/share/man/man1/labquiz.1.gz",
          "/usr/share/doc/laborix-test/copyright",
          "/usr/share/doc/laborix-test/changelog.Debian.gz", "/etc/xdg/Laborix/LabQuiz.conf"})
        expected.insert(QLatin1String(path), QStringLiteral("-rw-r--r--"));
    expected.insert(QStringLiteral("/usr/bin/labquiz"), QStringLiteral("-rwxr-xr-x"));
    QCOMPARE(modes, expected);

    // The example settings are a conffile, so remove keeps an adapted copy.
    r = dpkgDeb({QStringLiteral("--info"), QStringLiteral("conffiles")});
    QCOMPARE(r.out, QStringLiteral("/etc/xdg/Laborix/LabQuiz.conf\n"));

    QTemporaryDir unpacked;
    r = dpkgDeb({QStringLiteral("--extract"), unpacked.path()});
    QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.err));
    const QDir root(unpacked.path());
    const QString program = root.filePath(QStringLiteral("usr/bin/labquiz"));

    // Stripped, and still the program.
    r = run(QStringLiteral("file"), {QStringLiteral("-b"), program});
    QVERIFY2(r.out.contains(QStringLiteral(", stripped")), qPrintable(r.out));
    QTemporaryDir data;
    r = run(program, {QStringLiteral("--version")}, withoutDisplay(data.path()));
    QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.out));
    QCOMPARE(r.out.trimmed(), QStringLiteral("Laborix Test " LABQUIZ_VERSION " (28.03.2006)"));

    checkMenuFiles(QDir(root.filePath(QStringLiteral("usr/share"))), program);
    if (QTest::currentTestFailed())
        return;

    // Compressed the Debian way: gzip without a time stamp in the header,
    // so that rebuilding the same sources gives the same package.
    const QString manPage = root.filePath(QStringLiteral("usr/share/man/man1/labquiz.1.gz"));
    const QString changelog =
        root.filePath(QStringLiteral("usr/share/doc/laborix-test/changelog.Debian.gz"));
    for (const QString& gz : {manPage, changelog}) {
        QFile f(gz);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QByteArray head = f.read(8);
        QVERIFY2(head.startsWith("\x1f\x8b") && head.mid(4, 4) == QByteArray(4, '\0'),
                 qPrintable(gz));
    }

    // The man page renders without a warning and names every option,
    // variable and file a teacher or administrator meets.
    QProcessEnvironment manEnv = QProcessEnvironment::systemEnvironment();
    manEnv.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    manEnv.insert(QStringLiteral("MANWIDTH"), QStringLiteral("80"));
    manEnv.insert(QStringLiteral("MAN_KEEP_FORMATTING"), QString());
    r = runProgram(QStringLiteral("man"),
                   {QStringLiteral("--warnings"), QStringLiteral("-E"), QStringLiteral("UTF-8"),
                    QStringLiteral("-l"), manPage},
                   manEnv);
    QVERIFY2(r.finished && r.exitCode == 0 && r.err.isEmpty(), qPrintable(r.err));
    QVERIFY(r.out.contains(QStringLiteral("labquiz - Selbsttest")));
    const QString words = QStringLiteral(
        "/NEW -DEV --check --auswertung --csv --von --bis --help --version LABQUIZ_DATA "
        "LABQUIZ_TASKS LABQUIZ_RESULTS LABQUIZ_PRINT_TO LABQUIZ_DEV_DIR "
        "/etc/xdg/Laborix/LabQuiz.conf TaskFolder ResultsFolder labquiz.dat elements.dat "
        "names.ini laborix.log Ausgang/ Ergebnisse/ ~/.local/share/Laborix/LabQuiz/ "
        "Aufgabenordner Ergebnisordner");
    for (const QString& word : words.split(u' '))
        QVERIFY2(r.out.contains(word), qPrintable(word));

    // The changelog's latest entry is this package's version.
    const QByteArray changes = gunzip(changelog);
    QVERIFY2(changes.startsWith("laborix-test (" + version.toUtf8() + ") "),
             changes.left(80).constData());

    // Machine-readable copyright, under the licence the metainfo names.
    QFile copyright(root.filePath(QStringLiteral("usr/share/doc/laborix-test/copyright")));
    QVERIFY(copyright.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString copyrightText = QString::fromUtf8(copyright.readAll());
    QVERIFY(copyrightText.startsWith(QStringLiteral(
        "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/")));
    const QString allFiles = copyrightText.section(QStringLiteral("\n\nFiles: *\n"), 1)
                                 .section(QStringLiteral("\n\n"), 0, 0);
    const QString licence =
        controlFields(allFiles).value(QStringLiteral("License")).section(QLatin1Char('\n'), 0, 0);
    QFile meta(root.filePath(QStringLiteral("usr/share/metainfo/%1.metainfo.xml").arg(kAppId)));
    QVERIFY(meta.open(QIODevice::ReadOnly));
    QVERIFY2(!licence.isEmpty() && meta.readAll().contains("<project_license>" + licence.toUtf8() +
                                                           "</project_license>"),
             qPrintable(licence));

    // The example for the computer room changes nothing as shipped: Qt's
    // INI reader sees no key in it (its comments start with ";"; a "#"
    // would make keys of them). Taking the ";" from the group and the
    // settings gives the settings the program reads.
    const QString shipped = root.filePath(QStringLiteral("etc/xdg/Laborix/LabQuiz.conf"));
    {
        QSettings asShipped(shipped, QSettings::IniFormat);
        QCOMPARE(asShipped.status(), QSettings::NoError);
        QCOMPARE(asShipped.allKeys(), QStringList());
    }
    QFile conf(shipped);
    QVERIFY(conf.open(QIODevice::ReadOnly | QIODevice::Text));
    QByteArray adapted;
    for (const QByteArray& line : conf.readAll().split('\n')) {
        QVERIFY2(line.isEmpty() || line.startsWith(';'), line.constData());
        const QByteArray rest = line.mid(1);
        const bool setting = rest.startsWith('[') || (rest.contains('=') && !rest.contains(' '));
        adapted += (setting ? rest : line) + '\n';
    }
    QTemporaryDir confDir;
    const QString adaptedPath = confDir.filePath(QStringLiteral("LabQuiz.conf"));
    QVERIFY(writeFile(adaptedPath, adapted));
    QSettings settings(adaptedPath, QSettings::IniFormat);
    QCOMPARE(settings.status(), QSettings::NoError);
    QCOMPARE(settings.allKeys(),
             QStringList({QStringLiteral("ResultsFolder"), QStringLiteral("TaskFolder")}));
    for (const QString& key : settings.allKeys())
        QVERIFY(QDir::isAbsolutePath(settings.value(key).toString()));
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
        QStringLiteral(
            "if(NOT TARGET labquiz OR TARGET test_app OR TARGET labquiz_bench)\n"
            "  message(FATAL_ERROR \"falsche Ziele\")\n"
            "endif()\n"
            "get_target_property(out labquiz RUNTIME_OUTPUT_DIRECTORY)\n"
            "if(out STREQUAL CMAKE_BINARY_DIR)\n"
            "  message(FATAL_ERROR \"labquiz landet im Baum des äußeren Projekts\")\n"
            "endif()\n"
            "get_target_property(defs labquiz_source_data INTERFACE_COMPILE_DEFINITIONS)\n"
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
