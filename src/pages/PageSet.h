#pragma once

class QWidget;
class TestFlow;

// Creates every task page of a test in its container and hands it to the flow.
class PageSet final {
public:
    static void createTaskPages(TestFlow& flow, QWidget* holder);
};
