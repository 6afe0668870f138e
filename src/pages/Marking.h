#pragma once

#include "session/TestRecord.h"

#include <QString>

class QWidget;
struct SessionState;

// One check of one page, as every page does it: the page's tasks are counted
// at once, then each answer is coloured right or wrong and right answers are
// counted test-wide and on the page. Each task is also noted as the student
// met it, for the result file and the review of mistakes.
class Marking final {
public:
    Marking(SessionState& state, int page, int tasks);

    // Colours the field right (palette colour 10) and counts one right answer.
    void right(QWidget* field);
    // Colours the field wrong (palette colour 12).
    void wrong(QWidget* field);
    // For pages that count differently from how they colour (equations).
    void colourRight(QWidget* field);
    void addCorrect(int n = 1);

    // The same, noting the task with what was asked, expected and given;
    // the field's accessible description then tells the verdict.
    void right(QWidget* field, AnswerItem item);
    void wrong(QWidget* field, AnswerItem item);
    // Notes a task without colouring anything.
    void note(AnswerItem item) { m_record.items.append(std::move(item)); }

    // The page as judged so far.
    PageRecord record() const;

    int rightOnPage() const { return m_rightOnPage; }
    int tasks() const { return m_tasks; }

private:
    SessionState& m_state;
    int m_tasks;
    int m_rightOnPage = 0;
    PageRecord m_record;
};
