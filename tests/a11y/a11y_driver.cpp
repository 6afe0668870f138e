// Takes the program through a whole test for the accessibility walk
// (atspi_walk.py): every page as drawn and as checked, the periodic table,
// the calculator and the result form. After each state it prints
//   READY <state>|<name prefix>|...
// naming name prefixes the walk must find, and waits for a line on stdin
// before it goes on; at the end it prints DONE.
#include "app/AppMain.h"
#include "app/StartUp.h"
#include "pages/TaskPage.h"
#include "session/TestFlow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>
#include <functional>
#include <unistd.h>

namespace {

struct Step {
    std::function<void()> act;
    QString state;
};

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    auto* main = qobject_cast<AppMain*>(StartUp({app.arguments().first()}));
    if (!main)
        return 1;
    main->flow().setSlideStepMs(0);
    main->setLauncher([](const QString&, const QStringList&) { return true; });
    main->setExiter([&app] { app.quit(); });

    auto page = [main](int n) { return main->flow().taskPage(n); };
    auto closeModal = [] {
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
            dialog->reject();
    };
    QList<Step> steps;
    steps.append({[] {}, QStringLiteral("Startseite|Dein Name|Frühere Kandidaten")});
    steps.append({[main] {
                      main->findChild<QLineEdit*>(QStringLiteral("BenutzerName"))
                          ->setText(QStringLiteral("Anna"));
                      main->findChild<QPushButton*>(QStringLiteral("OkS0"))->click();
                  },
                  QStringLiteral("Seite 1|Symbol für |Name zum Symbol ")});
    struct PageNames {
        int number;
        const char* prefixes;
    };
    const PageNames order[] = {
        {1, "Symbol für |Name zum Symbol "},
        {2, "Zahl zur Zahlsilbe |Zahlsilbe zur Zahl "},
        {11, "Formel für |Name zur Formel "},
        {8, "Molare Masse von |Taschenrechner für Molare Masse"},
        {12, "Stoffmenge in mol: |Taschenrechner für Stoffmenge"},
        {9, "Koeffizient 1 in Gleichung 1"},
        {3, "Definition von "},
        {4, "Begriff zu Definition 1"},
        {5, "Ladung "},
        {6, "Ja zu Frage 1|Nein zu Frage 6"},
    };
    for (int i = 0; i < int(std::size(order)); ++i) {
        const int n = order[i].number;
        const QString prefixes = QString::fromUtf8(order[i].prefixes);
        if (i > 0)
            steps.append({[=] { page(order[i - 1].number)->nextButton()->click(); },
                          QStringLiteral("Seite %1|").arg(n) + prefixes});
        // Checked: every answer control carries its verdict as description.
        steps.append(
            {[=] { page(n)->okButton()->click(); },
             QStringLiteral("Seite %1 geprüft|").arg(n) + prefixes + QStringLiteral("|=falsch")});
        if (n == 5)
            steps.append({[main] { main->M_H_P2_Click(); },
                          QStringLiteral("Periodensystem|Periodensystem schließen")});
        if (n == 8)
            steps.append(
                {[main] { QTimer::singleShot(0, main, [main] { main->mnu_HelpCalc_Click(); }); },
                 QStringLiteral("Taschenrechner|Rechnung eingeben|Übernehmen")});
        if (n == 8)
            steps.append(
                {closeModal, QStringLiteral("Seite 8 nach dem Rechner|Molare Masse von ")});
    }
    steps.append({[=] { QTimer::singleShot(0, main, [=] { page(6)->nextButton()->click(); }); },
                  QStringLiteral("Ergebnis|<URKUNDE<Der Laborix - Test wurde bearbeitet von:<Anna"
                                 "<Von <Das entspricht der Note:<Bearbeitung am:"
                                 "<Graphik Drucken<Fehler ansehen<Neue Übung?<Ja<Nein")});

    int next = 0;
    auto runNext = [&] {
        if (next >= steps.size()) {
            std::printf("DONE\n");
            std::fflush(stdout);
            closeModal();
            QTimer::singleShot(0, &app, [&app] { app.exit(0); });
            return;
        }
        const Step step = steps.at(next++);
        step.act();
        // Whatever the step opened is drawn and known to the bus first.
        QTimer::singleShot(400, &app, [state = step.state] {
            std::printf("READY %s\n", state.toUtf8().constData());
            std::fflush(stdout);
        });
    };
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &app, [&] {
        char buffer[256];
        const ssize_t got = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (got <= 0) {
            input.setEnabled(false);
            app.exit(1);
            return;
        }
        // A step may open a modal dialog; it runs after this handler returns.
        QTimer::singleShot(0, &app, runNext);
    });
    QTimer::singleShot(300, &app, runNext);
    return app.exec();
}
