#pragma once

#include <QString>

class QWidget;

// What the expert level withholds. The pages, the menus and the periodic
// table all ask here, so that a change of what a "Streber" may use is made
// in one place and holds everywhere.
class ExpertLimits final {
public:
    enum class Aid {
        CalculatorButton, // the small calculator beside an answer field
        CalculatorMenu,   // "&Taschenrechner" in the help menu
        PeriodicTable,    // "Perioden&system" and Ctrl+F1
        MolarMassFormulas // the formulas beside the substance names of the molar-mass page
    };

    // True when the candidate at this level may use the aid.
    static bool allows(Aid aid, int expertLevel);
    // The teasing notice shown instead of the aid; empty for aids that are
    // withheld without a word.
    static QString refusal(Aid aid);
    // True when the aid may be used; otherwise shows its notice (with an
    // empty title) over parent and returns false.
    static bool mayUse(Aid aid, int expertLevel, QWidget* parent);

    // Which records a page draws from: all of them at the expert level, only
    // the basic ones before the level mark at the normal level.
    static bool drawsAllRecords(int expertLevel) { return expertLevel != 0; }
};
