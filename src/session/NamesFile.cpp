#include "session/NamesFile.h"

#include "chem/LegacyText.h"
#include "chem/TextLines.h"

#include "session/AtomicFile.h"

#include <QFileInfo>

namespace {

bool hasControlCharacters(QStringView line) {
    for (QChar c : line) {
        if (c.unicode() < 0x20 && c != u'\t')
            return true;
        if (c.unicode() == 0x7F || c.unicode() == 0xFFFD)
            return true;
    }
    return false;
}

int hexValue(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

} // namespace

QString NamesFile::escape(const QString& name) {
    QString out;
    out.reserve(name.size());
    for (QChar c : name) {
        switch (c.unicode()) {
        case u'\\':
            out += QLatin1String("\\\\");
            break;
        case u'\r':
            out += QLatin1String("\\r");
            break;
        case u'\n':
            out += QLatin1String("\\n");
            break;
        default:
            if (c.unicode() < 0x20 || c.unicode() == 0x7F)
                out += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
            else
                out += c;
        }
    }
    return out;
}

QString NamesFile::unescape(QStringView text) {
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c != u'\\' || i + 1 >= text.size()) {
            out += c;
            continue;
        }
        const QChar n = text.at(i + 1);
        if (n == u'\\') {
            out += u'\\';
            ++i;
        } else if (n == u'r') {
            out += u'\r';
            ++i;
        } else if (n == u'n') {
            out += u'\n';
            ++i;
        } else if (n == u'x' && i + 3 < text.size() && hexValue(text.at(i + 2)) >= 0 &&
                   hexValue(text.at(i + 3)) >= 0) {
            out += QChar(hexValue(text.at(i + 2)) * 16 + hexValue(text.at(i + 3)));
            i += 3;
        } else {
            out += c; // a lone backslash of a hand-edited file stays as it is
        }
    }
    return out;
}

QString NamesFile::parse(const QString& text, QStringList* names, int* difficulty,
                         QString* overviewFolder) {
    enum class Part { None, Settings, Names } part = Part::None;
    TextLines lines(text);
    QStringView line;
    int skipped = 0;
    while (lines.next(line)) {
        const QStringView t = line.trimmed();
        if (t.isEmpty() || t.startsWith(u';'))
            continue;
        if (t.startsWith(u'[') && t.endsWith(u']')) {
            const QStringView head = t.mid(1, t.size() - 2).trimmed();
            if (head.compare(u"Namen", Qt::CaseInsensitive) == 0)
                part = Part::Names;
            else if (head.compare(u"Einstellungen", Qt::CaseInsensitive) == 0)
                part = Part::Settings;
            else
                part = Part::None;
            continue;
        }
        const qsizetype eq = line.indexOf(u'=');
        const QStringView key = eq >= 0 ? line.left(eq).trimmed() : QStringView();
        if (eq >= 0 && key.compare(u"DIFFICULTY", Qt::CaseInsensitive) == 0) {
            bool ok = false;
            const int v = line.mid(eq + 1).trimmed().toInt(&ok);
            if (ok && difficulty)
                *difficulty = v;
            continue;
        }
        if (eq >= 0 && key.compare(u"AUSWERTUNG", Qt::CaseInsensitive) == 0 &&
            line.isValidUtf16()) {
            if (overviewFolder)
                *overviewFolder = unescape(line.mid(eq + 1).trimmed()).trimmed();
            continue;
        }
        // Half a UTF-16 pair (from a damaged "Unicode" file) is no text: it
        // could not be written back as it was read.
        if (eq >= 0 && key.compare(u"Name", Qt::CaseInsensitive) == 0 && line.isValidUtf16()) {
            const QString name = unescape(line.mid(eq + 1));
            if (names && !name.trimmed().isEmpty() && !names->contains(name))
                names->append(name);
            continue;
        }
        // A bare line under [Namen], written by hand, is a name too, as long
        // as it is readable text.
        if (part == Part::Names && !hasControlCharacters(line) && line.isValidUtf16()) {
            const QString name = line.toString();
            if (names && !names->contains(name))
                names->append(name);
            continue;
        }
        ++skipped;
    }
    return skipped ? QStringLiteral("%1 unlesbare Zeilen übersprungen").arg(skipped) : QString();
}

bool NamesFile::load() {
    m_names.clear();
    m_difficulty = -1;
    m_overviewFolder.clear();
    const std::optional<QString> text = LegacyText::readFile(m_path, &m_readProblem, kMaxFileBytes);
    if (!text)
        return false;
    parse(*text, &m_names, &m_difficulty, &m_overviewFolder);
    return true;
}

QString NamesFile::serialise() const {
    QString out =
        QStringLiteral("; Laborix Test: Namen früherer Kandidaten und die zuletzt gewählte "
                       "Stufe\r\n[Einstellungen]\r\n");
    if (m_difficulty >= 0)
        out += QStringLiteral("DIFFICULTY=%1\r\n").arg(m_difficulty);
    if (!m_overviewFolder.trimmed().isEmpty())
        out += QStringLiteral("AUSWERTUNG=") + escape(m_overviewFolder.trimmed()) +
               QStringLiteral("\r\n");
    out += QStringLiteral("[Namen]\r\n");
    for (const QString& name : m_names)
        out += QStringLiteral("Name=") + escape(name) + QStringLiteral("\r\n");
    return out;
}

bool NamesFile::save() {
    m_saveProblem.clear();
    if (m_readProblem.refused()) {
        m_saveProblem = QStringLiteral("die Namensliste %1 ließ sich nicht lesen und wird darum "
                                       "nicht überschrieben")
                            .arg(QFileInfo(m_path).fileName());
        return false;
    }
    return AtomicFile::write(m_path, serialise().toUtf8(), &m_saveProblem);
}

bool NamesFile::addName(const QString& name) {
    if (m_names.contains(name))
        return false;
    m_names.append(name);
    return true;
}

bool NamesFile::removeName(const QString& name) {
    return m_names.removeOne(name);
}
