#pragma once

#include <QWidget>

// A task page as the flow sees it: a container with its number that can be
// drawn afresh when it slides in. What is on it and how it is judged belongs
// to the page itself.
class FlowPage : public QWidget {
    Q_OBJECT
public:
    FlowPage(int pageNumber, QWidget* parent) : QWidget(parent), m_pageNumber(pageNumber) {}

    int pageNumber() const { return m_pageNumber; }
    // GenerateTest's block for this page.
    virtual void generate() = 0;

private:
    int m_pageNumber;
};
