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
    // Each page is built when the flow first needs it.
    auto place = [&flow, holder](int number, auto make) {
        flow.addPageFactory(number, [&flow, holder, make]() -> FlowPage* {
            TaskPage* page = make(flow, holder);
            page->setGeometry(0, 0, holder->width(), holder->height());
            page->hide();
            return page;
        });
    };
    place(1, [](TestFlow& f, QWidget* h) { return new ElementPage(f, h); });
    place(6, [](TestFlow& f, QWidget* h) { return new ComprehensionPage(f, h); });
    place(2, [](TestFlow& f, QWidget* h) { return new NumberSyllablePage(f, h); });
    place(8, [](TestFlow& f, QWidget* h) { return new MolarMassPage(f, h); });
    place(12, [](TestFlow& f, QWidget* h) { return new AmountPage(f, h); });
    place(11, [](TestFlow& f, QWidget* h) { return new SubstancePage(f, h); });
    place(9, [](TestFlow& f, QWidget* h) { return new EquationPage(f, h); });
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
        place(p.page, [p](TestFlow& f, QWidget* h) {
            return new PendingPage(f, p.page, p.buttons, QString::fromUtf8(p.title), h);
        });
}
