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

TaskPage* PageSet::create(int number, TestFlow& flow, QWidget* holder) {
    switch (number) {
    case 1:
        return new ElementPage(flow, holder);
    case 2:
        return new NumberSyllablePage(flow, holder);
    case 3:
        return new DefinitionPage(flow, holder);
    case 4:
        return new TermPage(flow, holder);
    case 5:
        return new IonChargePage(flow, holder);
    case 6:
        return new ComprehensionPage(flow, holder);
    case 8:
        return new MolarMassPage(flow, holder);
    case 9:
        return new EquationPage(flow, holder);
    case 11:
        return new SubstancePage(flow, holder);
    case 12:
        return new AmountPage(flow, holder);
    default:
        return nullptr;
    }
}

void PageSet::createTaskPages(TestFlow& flow, QWidget* holder) {
    // Each page is built when the flow first needs it or when the main
    // window has time after showing the start page, whichever comes first.
    for (int number : {1, 6, 2, 8, 12, 11, 9, 3, 4, 5}) {
        flow.addPageFactory(number, [&flow, holder, number]() -> FlowPage* {
            TaskPage* page = create(number, flow, holder);
            page->setGeometry(0, 0, holder->width(), holder->height());
            page->hide();
            return page;
        });
    }
}
