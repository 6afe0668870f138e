#include "pages/PageSet.h"

#include "pages/AmountPage.h"
#include "pages/ComprehensionPage.h"
#include "pages/DefinitionPage.h"
#include "pages/ElementPage.h"
#include "pages/EquationPage.h"
#include "pages/IonChargePage.h"
#include "pages/MolarMassPage.h"
#include "pages/NumberSyllablePage.h"
#include "pages/SubstancePage.h"
#include "pages/TermPage.h"
#include "session/TestFlow.h"

#include <QWidget>

void PageSet::createTaskPages(TestFlow& flow, QWidget* holder) {
    // Each page is built when the flow first needs it or when the main
    // window has time after showing the start page, whichever comes first.
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
    place(3, [](TestFlow& f, QWidget* h) { return new DefinitionPage(f, h); });
    place(4, [](TestFlow& f, QWidget* h) { return new TermPage(f, h); });
    place(5, [](TestFlow& f, QWidget* h) { return new IonChargePage(f, h); });
}
