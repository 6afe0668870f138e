#pragma once

#include <QStringView>

// Walks a decoded text line by line without copying. CR LF, a lone LF and a
// lone CR all end a line; a last line without an ending still counts.
class TextLines final {
public:
    explicit TextLines(QStringView text) : m_text(text) {}

    // False at the end of the text; the line leaves out its ending.
    bool next(QStringView& line);
    // Number (from 1) of the line that next() returned last.
    int lineNumber() const { return m_lineNumber; }
    bool atEnd() const { return m_pos >= m_text.size(); }

private:
    QStringView m_text;
    qsizetype m_pos = 0;
    int m_lineNumber = 0;
};
