#pragma once

// Shared by the tests of the numeric pages and the calculator: a bank with
// one section filled, a page with its flow and score board, and a helper
// that works the next calculator (or answers the notice that comes instead).

#include "TestSupport.h"
#include "controls/GradeMark.h"
#include "controls/PraisePanel.h"
#include "session/TestFlow.h"

#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

// Only `section` has records: `basic` lines before the level mark, `extra` after it.
inline TaskBank bankWithSection(TaskBank::Section section, const QStringList& basic,
                                const QStringList& extra) {
    QStringList lines;
    for (int s = 0; s < TaskBank::SectionCount; ++s) {
        lines << QStringLiteral("Abschnitt") << QStringLiteral("#");
        if (s == section)
            lines << basic << QStringLiteral(u"\u00E6\u00E6") << extra;
        lines << QStringLiteral("@");
    }
    return TaskBank::fromText(LegacyText::decode(cp1252Lines(lines)));
}

template <class Page> struct PageFixture {
    QWidget holder;
    QLabel tasks, correct;
    GradeMark mark;
    TestFlow flow{&holder};
    Page* page;

    explicit PageFixture(TaskBank bank) {
        holder.resize(960, 520);
        page = new Page(flow, &holder);
        page->resize(960, 520);
        flow.addPage(page);
        flow.setPraisePanel(new PraisePanel(&holder));
        flow.setScoreBoard(&tasks, &correct, &mark);
        flow.setBank(std::move(bank), QStringLiteral("labquiz.dat"));
        flow.setSlideStepMs(0);
        holder.show();
    }
    template <class W = QLineEdit> W* named(const QString& name, int i) const {
        return page->template findChild<W*>(QStringLiteral("%1(%2)").arg(name).arg(i));
    }
    SessionState& state() { return flow.state(); }
    static QColor colour(QWidget* w) { return w->property("markColour").value<QColor>(); }
    // Types the answers, checks, and returns how many the page counted right.
    int check(const QString& field, const QStringList& answers) {
        const int before = state().CorrectSoFar;
        for (int i = 0; i < answers.size(); ++i)
            named(field, i)->setText(answers[i]);
        page->okButton()->click();
        return state().CorrectSoFar - before;
    }
    // Enter from the first field walks all of them and comes back to it.
    bool enterRing(const QString& field, int count) {
        holder.activateWindow();
        named(field, 0)->setFocus();
        for (int i = 0; i < count; ++i) {
            if (!named(field, i)->hasFocus())
                return false;
            QTest::keyClick(named(field, i), Qt::Key_Return);
        }
        return named(field, 0)->hasFocus();
    }
};

// In the calculator: types `expression`, Enter, then "Übernehmen" (or Escape
// when takeOver is false). A notice instead is answered and remembered.
class CalculatorDriver : public QObject {
public:
    explicit CalculatorDriver(QString expression, bool takeOver = true)
        : m_expression(std::move(expression)), m_takeOver(takeOver) {
        QObject::connect(&m_timer, &QTimer::timeout, this, [this] { poll(); });
        m_timer.start(10);
    }
    bool sawCalculator() const { return m_sawCalculator; }
    QString notice() const { return m_notice; }
    QString noticeTitle() const { return m_noticeTitle; }

private:
    void poll() {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        m_timer.stop();
        if (dialog->objectName() != QLatin1String("Taschenrechner")) {
            m_noticeTitle = dialog->windowTitle();
            m_notice = dialog->findChild<QLabel*>(QStringLiteral("NoticeText"))->text();
            dialog->accept();
            return;
        }
        m_sawCalculator = true;
        auto* display = dialog->findChild<QLineEdit*>(QStringLiteral("Anzeige"));
        QTest::keyClicks(display, m_expression);
        QTest::keyClick(display, Qt::Key_Return);
        if (m_takeOver)
            dialog->findChild<QPushButton*>(QStringLiteral("Übernehmen"))->click();
        else
            QTest::keyClick(dialog, Qt::Key_Escape);
    }

    QString m_expression;
    bool m_takeOver;
    QTimer m_timer;
    bool m_sawCalculator = false;
    QString m_notice;
    QString m_noticeTitle;
};
