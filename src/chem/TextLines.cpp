#include "chem/TextLines.h"

bool TextLines::next(QStringView& line) {
    const qsizetype n = m_text.size();
    if (m_pos >= n)
        return false;
    const QChar* data = m_text.data();
    qsizetype i = m_pos;
    while (i < n) {
        const char16_t c = data[i].unicode();
        if (c == u'\n' || c == u'\r')
            break;
        ++i;
    }
    line = m_text.mid(m_pos, i - m_pos);
    if (i < n) {
        if (data[i].unicode() == u'\r' && i + 1 < n && data[i + 1].unicode() == u'\n')
            i += 2;
        else
            i += 1;
    }
    m_pos = i;
    ++m_lineNumber;
    return true;
}
