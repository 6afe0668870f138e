#pragma once

#include "session/TestRecord.h"

class ElementTable;

// Puts the chemist's hint into every wrong item of a judged page. The pages
// note their tasks in a fixed order (page 1: three symbols, then three
// names; page 2: two numbers, then two syllables; page 11: three formulas,
// then three names), so the kind of each task follows from its place.
class PageHints final {
public:
    static void fill(PageRecord& record, const ElementTable& elements);
};
