#include "checker/CheckContext.h"

#include "chem/TextLines.h"

CheckContext::CheckContext(QStringView text, const QString& file, const ElementTable* elements)
    : m_file(file), m_elements(elements), m_bank(TaskBank::fromText(text)) {
    TextLines walker(text);
    QStringView line;
    while (walker.next(line))
        m_lines.append(line);
}

QString CheckContext::shown(QStringView text) {
    constexpr qsizetype kMax = 60;
    if (text.size() <= kMax)
        return text.toString();
    return text.left(kMax).toString() + QStringLiteral("...");
}

QString CheckContext::sectionLabel(int s) {
    return QStringLiteral("Abschnitt %1 (%2)")
        .arg(s + 1)
        .arg(TaskBank::sectionName(TaskBank::Section(s)));
}

QString CheckContext::fieldName(TaskBank::Section s, int k) {
    static const char16_t* const names[TaskBank::SectionCount][3] = {
        {u"Die Namenszeile", u"Das Symbol", nullptr},
        {u"Die Zahl", u"Die Zahlsilbenzeile", nullptr},
        {u"Der Name", u"Die molare Masse", u"Die Formel"},
        {u"Der Fachbegriff", u"Die Erklärung", nullptr},
        {u"Der Name des Ions", u"Die Ladung", nullptr},
        {u"Die Aussage", u"Die Angabe J/N", nullptr},
        {u"Die Gleichung", nullptr, nullptr},
        {u"Die Formelzeile", u"Die Ionenzeile", u"Der Name"},
        {u"Die Frage", u"Die Antwort", nullptr}};
    const char16_t* name = names[s][k];
    return name ? QString::fromUtf16(name) : QString();
}

QString CheckContext::numberText(double v) {
    return QString::number(v, 'g', 7);
}
