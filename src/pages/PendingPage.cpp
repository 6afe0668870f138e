#include "pages/PendingPage.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

PendingPage::PendingPage(TestFlow& flow, int pageNumber, int buttonNumber, const QString& title,
                         QWidget* parent)
    : TaskPage(flow, pageNumber, buttonNumber, parent) {
    setHeading(title, QString());
    QLabel* text = makeLabel(QStringLiteral("Diese Aufgabenseite ist noch nicht fertig. "
                                            "Mit „Weiter“ geht es zur nächsten Seite."),
                             "hint");
    grid()->addWidget(text, 0, 0);
}

void PendingPage::draw() {
    okButton()->hide();
    nextButton()->show();
    nextButton()->setFocus();
}
