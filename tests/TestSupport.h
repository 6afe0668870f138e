#pragma once

// What the tests share: answering notices and working the calculator, writing
// files and task banks as a teacher's editor would, and a task page with its
// flow and score board.

#include "app/AppMain.h"
#include "app/StartUp.h"
#include "chem/ElementTable.h"
#include "chem/LegacyText.h"
#include "controls/GradeMark.h"
#include "controls/PraisePanel.h"
#include "session/RandomSource.h"
#include "session/TaskBank.h"
#include "session/TestFlow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>
#include <functional>
#include <initializer_list>

// One row of a data-driven test: its name and one value per column.
template <class... Values> void dataRow(const char* name, const Values&... values) {
    (QTest::newRow(name) << ... << values);
}

// Answers the next modal dialog. A notice: clicks the button with this
// caption and remembers what the notice said. The calculator, when an
// expression is given: types it, Enter, then "Übernehmen" (or Escape).
class ModalAnswer : public QObject {
public:
    explicit ModalAnswer(QString button, QString expression = {}, bool takeOver = true)
        : m_button(std::move(button)), m_expression(std::move(expression)), m_takeOver(takeOver) {
        QObject::connect(&m_timer, &QTimer::timeout, this, [this] { poll(); });
        m_timer.start(10);
    }
    bool seen() const { return m_seen; }
    bool sawCalculator() const { return m_sawCalculator; }
    QString text() const { return m_text; }
    QString title() const { return m_title; }
    QStringList buttons() const { return m_buttons; }

private:
    void poll() {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        m_timer.stop();
        m_seen = true;
        if (!m_expression.isEmpty() && dialog->objectName() == QLatin1String("Taschenrechner")) {
            m_sawCalculator = true;
            auto* display = dialog->findChild<QLineEdit*>(QStringLiteral("Anzeige"));
            QTest::keyClicks(display, m_expression);
            QTest::keyClick(display, Qt::Key_Return);
            if (m_takeOver)
                dialog->findChild<QPushButton*>(QStringLiteral("Übernehmen"))->click();
            else
                QTest::keyClick(dialog, Qt::Key_Escape);
            return;
        }
        m_title = dialog->windowTitle();
        if (auto* label = dialog->findChild<QLabel*>(QStringLiteral("NoticeText")))
            m_text = label->text();
        QAbstractButton* target = nullptr;
        for (QAbstractButton* b : dialog->findChildren<QAbstractButton*>()) {
            m_buttons << b->text();
            if (b->text() == m_button)
                target = b;
        }
        if (target)
            target->click();
        else
            dialog->reject();
    }

    QString m_button, m_expression;
    bool m_takeOver;
    QTimer m_timer;
    bool m_seen = false, m_sawCalculator = false;
    QString m_text, m_title;
    QStringList m_buttons;
};

// Runs act on the modal dialog (the one named `name`, when given) once it is
// up, active and holds the focus, so that keys sent then reach it.
inline void whenModal(const QString& name, std::function<void(QDialog*)> act) {
    auto* poll = new QTimer;
    poll->setInterval(10);
    QObject::connect(poll, &QTimer::timeout, [poll, name, act] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        const QWidget* focus = QApplication::focusWidget();
        if (!dialog || (!name.isEmpty() && dialog->objectName() != name) ||
            !dialog->isActiveWindow() || !focus || focus->window() != dialog)
            return;
        poll->stop();
        poll->deleteLater();
        act(dialog);
    });
    poll->start();
}

// Every file under folder, by its path inside it, with its content.
inline QMap<QString, QByteArray> folderFiles(const QString& folder) {
    QMap<QString, QByteArray> out;
    QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile f(it.next());
        f.open(QIODevice::ReadOnly);
        out.insert(QDir(folder).relativeFilePath(f.fileName()), f.readAll());
    }
    return out;
}

// Joins lines with CR LF and encodes them in Windows-1252, as a teacher's
// file would be.
inline QByteArray cp1252Lines(const QStringList& lines) {
    return LegacyText::encodeWindows1252(lines.join(QStringLiteral("\r\n")) +
                                         QStringLiteral("\r\n"));
}

inline bool writeFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

// A program run to its end, or stopped after timeoutMs.
struct ProgramRun {
    bool finished = false; // ended by itself, in time
    int exitCode = -1;
    QString out, err;
};

inline ProgramRun runProgram(const QString& program, const QStringList& arguments,
                             const QProcessEnvironment& environment, const QString& folder = {},
                             int timeoutMs = 120000) {
    QProcess p;
    p.setProcessEnvironment(environment);
    p.setWorkingDirectory(folder);
    p.start(program, arguments);
    ProgramRun r;
    r.finished = p.waitForFinished(timeoutMs) && p.exitStatus() == QProcess::NormalExit;
    if (p.state() != QProcess::NotRunning) {
        p.kill();
        p.waitForFinished();
    }
    r.exitCode = p.exitCode();
    r.out = QString::fromLocal8Bit(p.readAllStandardOutput());
    r.err = QString::fromLocal8Bit(p.readAllStandardError());
    return r;
}

// This environment without a display of any kind, the data folder given
// (none when empty).
inline QProcessEnvironment withoutDisplay(const QString& dataFolder) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "LABQUIZ_DEV_DIR"})
        env.remove(QLatin1String(name));
    env.remove(QStringLiteral("LABQUIZ_DATA"));
    if (!dataFolder.isEmpty())
        env.insert(QStringLiteral("LABQUIZ_DATA"), dataFolder);
    return env;
}

// The element table compiled into the program, read once.
inline const ElementTable& shippedElements() {
    static const ElementTable table = ElementTable::load(QStringLiteral(":/data/elements.dat"));
    return table;
}

inline TaskBank bankOf(const QStringList& lines) {
    return TaskBank::fromText(LegacyText::decode(cp1252Lines(lines)));
}

const QString kLevelMark = QStringLiteral(u"\u00E6\u00E6");

// The lines of one section: the records before the level mark and after it.
struct SectionLines {
    TaskBank::Section section;
    QStringList basic, expert;
};

// Only the given sections have records; the others are empty.
inline TaskBank bankWith(std::initializer_list<SectionLines> filled) {
    QStringList lines;
    for (int s = 0; s < TaskBank::SectionCount; ++s) {
        lines << QStringLiteral("Abschnitt") << QStringLiteral("#");
        for (const SectionLines& f : filled)
            if (f.section == s)
                lines << f.basic << kLevelMark << f.expert;
        lines << QStringLiteral("@");
    }
    return bankOf(lines);
}

// A bank whose every section has `basic` records before its level mark and
// `extra` after it, with predictable content ("Element1", "E1", ...).
inline QStringList syntheticBank(int basic, int extra) {
    QStringList out;
    auto section = [&](const QString& title, const std::function<QStringList(int)>& record) {
        out << title << QStringLiteral("#");
        for (int i = 1; i <= basic + extra; ++i) {
            if (i == basic + 1)
                out << kLevelMark;
            out << record(i);
        }
        if (extra == 0)
            out << kLevelMark;
        out << QStringLiteral("@");
    };
    const auto n = [](const char* pattern, int i) { return QString::fromUtf8(pattern).arg(i); };
    section("Elemente", [&](int i) { return QStringList{n("Element%1*Elem%1", i), n("E%1", i)}; });
    section("Zahlsilben", [&](int i) { return QStringList{n("%1", i), n("silbe%1", i)}; });
    section("Molare Massen", [&](int i) {
        return QStringList{n("Stoff %1", i), n("%1.5", i), n("X%1", i)};
    });
    section("Definitionen", [&](int i) {
        return QStringList{n("Begriff %1", i), n("Definition %1", i)};
    });
    section("Ionen", [&](int i) {
        return QStringList{n("Ion %1", i), QString::number(i % 7 - 3)};
    });
    section("Aussagen", [&](int i) { return QStringList{n("Aussage %1", i), i % 2 ? "J" : "N"}; });
    section("Gleichungen", [&](int i) { return QStringList{n("@%1A+@1B=@1C%1", i)}; });
    section("Stoffe", [&](int i) { return QStringList{n("F%1", i), "F^+*X^-", n("Name %1", i)}; });
    section("Stoffmengen", [&](int i) { return QStringList{n("Frage %1", i), n("0.%1", i)}; });
    return out;
}

// The program's main windows on a data folder of their own (the shipped
// files are seeded into it), sliding at once; a new test or the end are
// only pretended. The windows go before the folder does.
struct AppRun {
    QTemporaryDir dir;
    QList<QPointer<AppMain>> windows;

    AppRun() { qputenv("LABQUIZ_DATA", dir.path().toLocal8Bit()); }
    ~AppRun() { qDeleteAll(windows); }
    AppMain* start(const QStringList& args = {QStringLiteral("labquiz")}) {
        auto* main = qobject_cast<AppMain*>(StartUp(args));
        if (main) {
            windows << main;
            main->flow().setSlideStepMs(0);
            main->setLauncher([](const QString&, const QStringList&) { return true; });
            main->setExiter([] {});
        }
        return main;
    }
    QString file(const QString& name) const { return dir.filePath(name); }
};

template <class W = QWidget> W* child(const QObject* parent, const QString& name) {
    return parent->findChild<W*>(name);
}

// Types the name on the start page and presses its start button.
inline void startTest(AppMain* main, const QString& name) {
    child<QLineEdit>(main, QStringLiteral("BenutzerName"))->setText(name);
    child<QPushButton>(main, QStringLiteral("OkS0"))->click();
}

// A task page in a card of its own with the flow, score board and praise
// panel of the main window; further pages may be added beside it.
template <class Page> struct PageFixture {
    QWidget holder;
    QLabel tasks, correct;
    GradeMark mark;
    TestFlow flow{&holder};
    Page* page;

    explicit PageFixture(TaskBank bank) {
        holder.resize(960, 520);
        page = add<Page>();
        flow.setPraisePanel(new PraisePanel(&holder));
        flow.setScoreBoard(&tasks, &correct, &mark);
        flow.setBank(std::move(bank), QStringLiteral("labquiz.dat"));
        flow.setSlideStepMs(0);
        holder.show();
    }
    template <class P> P* add() {
        auto* p = new P(flow, &holder);
        p->resize(960, 520);
        flow.addPage(p);
        return p;
    }
    SessionState& state() { return flow.state(); }
    template <class W = QLineEdit> W* named(const QString& name, int i) const {
        return holder.template findChild<W*>(QStringLiteral("%1(%2)").arg(name).arg(i));
    }
    static QColor colour(QWidget* w) { return w->property("markColour").value<QColor>(); }
    // Shows page `number` with the records drawn in this order from a table
    // of `max` entries.
    void showInOrder(int number, const QList<int>& records, int max) {
        QList<double> values;
        for (int k : records)
            values << (k + 0.5) / (max + 1);
        flow.setRandomSource(std::make_unique<FixedRandomSource>(values));
        flow.ShowPage(number);
    }
    // The first `answers` drawn answers of `rounds` draws of page `number`.
    QSet<QString> drawnOver(int number, int level, int answers, int rounds = 30) {
        QSet<QString> seen;
        state().ExpertLevel = level;
        for (int r = 0; r < rounds; ++r) {
            flow.ShowPage(number);
            for (int i = 0; i < answers; ++i)
                seen << state().DrawnAnswers[i];
        }
        return seen;
    }
    // Enter walks the fields in this order, each to the next, and wraps to the first.
    bool enterWalk(const QStringList& order) {
        holder.activateWindow();
        QWidget* first = holder.findChild<QWidget*>(order.first());
        first->setFocus();
        for (const QString& name : order) {
            QWidget* w = holder.findChild<QWidget*>(name);
            if (!w || !w->hasFocus())
                return false;
            QTest::keyClick(w, Qt::Key_Return);
        }
        return first->hasFocus();
    }
};
