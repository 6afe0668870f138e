#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringView>
#include <optional>

// The elements of elements.dat: one line per element,
// "Ordnungszahl;Symbol;Name;Atommasse;Gruppe;Periode;Kategorie;Elektronegativität",
// lines starting with "#" and blank lines skipped. It feeds the periodic
// table and the bank checker's sums, so masses are kept exactly, in
// hundredths of a unit, as the file writes them.
class ElementTable final {
public:
    struct Element {
        int number = 0;
        QString symbol;
        QString name;
        // In 0.01 u. For an element known only by the mass number of its
        // longest-lived isotope ("[98]") this is that number times 100.
        int massHundredths = 0;
        bool massNumberOnly = false;
        int group = 0;  // 1..18
        int period = 0; // 1..7
        QString category;
        std::optional<double> electronegativity; // Pauling; none for most noble gases
        int line = 0;

        // A mass good for molar-mass sums.
        bool hasMass() const { return massHundredths > 0 && !massNumberOnly; }
    };
    struct Problem {
        int line = 0;
        QString text; // German
    };

    static ElementTable load(const QString& path);
    static ElementTable fromText(QStringView text);

    bool fileRead() const { return m_fileRead; }
    // Why the file was not read (German); empty when it was.
    QString readProblem() const { return m_readProblem; }
    int count() const { return static_cast<int>(m_elements.size()); }
    const QList<Element>& elements() const { return m_elements; }
    // Case matters: "Co" is cobalt, "CO" is no symbol.
    const Element* find(QStringView symbol) const;
    const Element* byNumber(int number) const;
    // Lines that could not be read, or only in part; such a line's element
    // is left out, or kept without the part that was wrong.
    const QList<Problem>& problems() const { return m_problems; }

private:
    void readLine(QStringView line, int lineNumber);

    bool m_fileRead = false;
    QString m_readProblem;
    QList<Element> m_elements;
    QHash<QString, int> m_bySymbol;
    QHash<int, int> m_byNumber;
    QList<Problem> m_problems;
};
