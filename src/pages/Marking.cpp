#include "pages/Marking.h"

#include "controls/Look.h"
#include "session/SessionState.h"

Marking::Marking(SessionState& state, int tasks) : m_state(state), m_tasks(tasks) {
    m_state.TasksSoFar += tasks;
}

void Marking::colourRight(QWidget* field) {
    Look::setBackground(field, Look::right());
}

void Marking::addCorrect(int n) {
    m_state.CorrectSoFar += n;
    m_rightOnPage += n;
}

void Marking::right(QWidget* field) {
    colourRight(field);
    addCorrect(1);
}

void Marking::wrong(QWidget* field) {
    Look::setBackground(field, Look::wrong());
}
