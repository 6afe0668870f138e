#include "pages/PageSet.h"

#include "pages/AmountPage.h"
#include "pages/ComprehensionPage.h"
#include "pages/ElementPage.h"
#include "pages/EquationPage.h"
#include "pages/MolarMassPage.h"
#include "pages/NumberSyllablePage.h"
#include "pages/PendingPage.h"
#include "pages/SubstancePage.h"
#include "session/TestFlow.h"

#include <QWidget>

void PageSet::createTaskPages(TestFlow& flow, QWidget* holder) {
    auto place = [&](TaskPage* page) {
        page->setGeometry(0, 0, holder->width(), holder->height());
        page->hide();
        flow.addPage(page);
    };
    place(new ElementPage(flow, holder));
    place(new ComprehensionPage(flow, holder));
    place(new NumberSyllablePage(flow, holder));
    place(new MolarMassPage(flow, holder));
    place(new AmountPage(flow, holder));
    place(new SubstancePage(flow, holder));
    place(new EquationPage(flow, holder));
    // Pages still to be built: they keep their place in the order so that a
    // test runs through to the end.
    struct Pending {
        int page;
        int buttons;
        const char* title;
    };
    const Pending pending[] = {
        {3, 3, "Definitionen"}, {4, 4, "Chemische Begriffe"}, {5, 5, "Ionenladungen"}};
    for (const Pending& p : pending)
        place(new PendingPage(flow, p.page, p.buttons, QString::fromUtf8(p.title), holder));
}
