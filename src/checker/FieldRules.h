#pragma once

#include <QString>
#include <QStringView>
#include <optional>

class CheckContext;

// Single lines as the reader takes them: texts cut to their width, lists of
// alternatives with empty pieces, number lines that do not read fully as
// numbers, and J/N flags.
class FieldRules final {
public:
    static void checkWidth(CheckContext& ctx, int line, QStringView text, int width,
                           const QString& what);
    static void checkAlternatives(CheckContext& ctx, int line, QStringView text,
                                  QStringView separator, const QString& what);
    // The value when the whole line reads as a number, as the reader takes it.
    static std::optional<double> readNumber(CheckContext& ctx, int line, QStringView text,
                                            const QString& what);
    static std::optional<int> readWholeNumber(CheckContext& ctx, int line, QStringView text,
                                              const QString& what);
    static void checkFlag(CheckContext& ctx, int line, QStringView text);
};
