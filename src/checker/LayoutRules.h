#pragma once

class CheckContext;

// The layout of the sections: each has its header ending in "#", its level
// mark "ææ" and its end "@", and nothing stands after the ninth.
class LayoutRules final {
public:
    static void checkLayout(CheckContext& ctx);

private:
    static void checkHeader(CheckContext& ctx, int s);
    static void checkLevelMarks(CheckContext& ctx, int s);
};
