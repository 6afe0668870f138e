#include "pages/PageSet.h"

#include "pages/DefinitionPage.h"
#include "pages/ElementPage.h"
#include "pages/IonChargePage.h"
#include "pages/PendingPage.h"
#include "pages/TermPage.h"
#include "session/TestFlow.h"

#include <QWidget>

void PageSet::createTaskPages(TestFlow& flow, QWidget* holder) {
    auto place = [&](TaskPage* page) {
        page->setGeometry(0, 0, holder->width(), holder->height());
        page->hide();
        flow.addPage(page);
    };
    place(new ElementPage(flow, holder));
    place(new DefinitionPage(flow, holder));
    place(new TermPage(flow, holder));
    place(new IonChargePage(flow, holder));
    // Pages still to be built: they keep their place in the order so that a
    // test runs through to the end.
    struct Pending {
        int page;
        int buttons;
        const char* title;
    };
    const Pending pending[] = {{2, 2, "Zahlsilben"},          {6, 6, "Verständnisfragen"},
                               {8, 7, "Molare Massen"},       {9, 8, "Gleichungen einrichten"},
                               {11, 11, "Formeln und Namen"}, {12, 12, "Stoffmengen"}};
    for (const Pending& p : pending)
        place(new PendingPage(flow, p.page, p.buttons, QString::fromUtf8(p.title), holder));
}
