#pragma once

#include "pages/TaskPage.h"

// Holds the place of a task page that is not built yet: it asks nothing and
// only leads on, so that the order of a test stays whole.
class PendingPage final : public TaskPage {
    Q_OBJECT
public:
    PendingPage(TestFlow& flow, int pageNumber, int buttonNumber, const QString& title,
                QWidget* parent);

protected:
    QList<Need> needs() const override { return {}; }
    int taskCount() const override { return 0; }
    void draw() override;
    bool judge(Marking&) override { return false; }
};
