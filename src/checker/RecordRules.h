#pragma once

#include "session/TaskBank.h"

class CheckContext;

// The records of one section: marker lines read as data, repeated entries,
// empty lines, each field handed to the rule for its kind, and whether the
// section holds enough distinct entries for its page at either level.
class RecordRules final {
public:
    static void checkRecords(CheckContext& ctx, TaskBank::Section s);

private:
    static bool checkMarkerLine(CheckContext& ctx, TaskBank::Section s, int first, int k);
    static void checkFields(CheckContext& ctx, TaskBank::Section s, int first, bool repeated);
    static void checkCounts(CheckContext& ctx, TaskBank::Section s, int basicDistinct,
                            int allDistinct, int definitionTexts);
};
