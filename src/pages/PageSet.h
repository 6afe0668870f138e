#pragma once

class QWidget;
class TaskPage;
class TestFlow;

// Creates every task page of a test in its container and hands it to the flow.
class PageSet final {
public:
    static void createTaskPages(TestFlow& flow, QWidget* holder);
    // The task page of container `number` (Seite(n)); nullptr for a number
    // that has none.
    static TaskPage* create(int number, TestFlow& flow, QWidget* holder);
};
