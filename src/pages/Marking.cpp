#include "pages/Marking.h"

#include "controls/Look.h"
#include "pages/TaskNames.h"
#include "session/SessionState.h"

#include <QWidget>

Marking::Marking(SessionState& state, int page, int tasks) : m_state(state), m_tasks(tasks) {
    m_state.TasksSoFar += tasks;
    m_record.page = page;
    m_record.title = pageTitle(page);
}

PageRecord Marking::record() const {
    PageRecord r = m_record;
    r.tasks = m_tasks;
    r.correct = m_rightOnPage;
    return r;
}

void Marking::right(QWidget* field, AnswerItem item) {
    right(field);
    field->setAccessibleDescription(TaskNames::verdict(true));
    item.right = true;
    note(std::move(item));
}

void Marking::wrong(QWidget* field, AnswerItem item) {
    wrong(field);
    field->setAccessibleDescription(TaskNames::verdict(false, item.expected));
    item.right = false;
    note(std::move(item));
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
