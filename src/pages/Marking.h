#pragma once

#include <QString>

class QWidget;
struct SessionState;

// One check of one page, as every page does it: the page's tasks are counted
// at once, then each answer is coloured right or wrong and right answers are
// counted test-wide and on the page.
class Marking final {
public:
    Marking(SessionState& state, int tasks);

    // Colours the field right (palette colour 10) and counts one right answer.
    void right(QWidget* field);
    // Colours the field wrong (palette colour 12).
    void wrong(QWidget* field);
    // For pages that count differently from how they colour (equations).
    void colourRight(QWidget* field);
    void addCorrect(int n = 1);

    int rightOnPage() const { return m_rightOnPage; }
    int tasks() const { return m_tasks; }

private:
    SessionState& m_state;
    int m_tasks;
    int m_rightOnPage = 0;
};
