#pragma once

#include <QTranslator>

// The few texts Qt itself puts on screen in this program, in German: key
// names in menu shortcuts ("Strg+F1"), the context menu of an input field
// and that of a scroll bar. A table in code rather than Qt's translation
// files: those are a package of their own that a school computer may lack,
// and loading them would cost start-up time for a dozen words.
class GermanQtTexts final : public QTranslator {
    Q_OBJECT
public:
    using QTranslator::QTranslator;

    QString translate(const char* context, const char* sourceText,
                      const char* disambiguation = nullptr, int n = -1) const override;
    bool isEmpty() const override { return false; }
};
