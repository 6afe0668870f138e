#include "result/ResultRecord.h"

#include "result/FinalGrade.h"
#include "result/JsonTree.h"
#include "session/SessionState.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr auto kTimeFormat = Qt::ISODate;

QString levelName(bool expert) {
    return expert ? QStringLiteral("expert") : QStringLiteral("normal");
}

QJsonObject itemToJson(const AnswerItem& item) {
    QJsonObject o{{QStringLiteral("prompt"), item.prompt},
                  {QStringLiteral("expected"), item.expected},
                  {QStringLiteral("given"), item.given},
                  {QStringLiteral("right"), item.right}};
    if (!item.hint.isEmpty())
        o.insert(QStringLiteral("hint"), item.hint);
    return o;
}

// A whole number that JSON holds as a double: exact, not negative, and of
// a size a test can have.
bool readCount(const JsonTree::Value& o, const char* key, int* out) {
    const JsonTree::Value v = o.member(QLatin1String(key));
    if (!v.isNumber())
        return false;
    const double d = v.toNumber();
    if (d < 0 || d > 1'000'000 || d != double(qint64(d)))
        return false;
    *out = int(d);
    return true;
}

bool readText(const JsonTree::Value& o, const char* key, QString* out) {
    const JsonTree::Value v = o.member(QLatin1String(key));
    if (!v.isString())
        return false;
    *out = v.toString();
    return true;
}

std::optional<ResultRecord> refuse(QString* why, const QString& text) {
    if (why)
        *why = text;
    return std::nullopt;
}

} // namespace

ResultRecord ResultRecord::fromTest(const SessionState& state, const FinalResult& result) {
    ResultRecord r;
    r.program = QStringLiteral("Laborix Test 3.0");
    r.candidate = state.CandidateName;
    r.expert = state.isExpert();
    // Seconds only: the file says what the certificate says.
    auto toSecond = [](QDateTime t) {
        if (!t.isValid())
            t = QDateTime::currentDateTime();
        return t.addMSecs(-t.time().msec());
    };
    r.started = toSecond(state.StartedAt);
    r.finished = toSecond(state.FinishedAt);
    r.tasks = state.TasksSoFar;
    r.correct = state.CorrectSoFar;
    r.grade = result.gradeWord;
    r.points = result.gradeNumber;
    r.pages = state.Pages;
    return r;
}

QByteArray ResultRecord::toJson() const {
    QJsonArray pageArray;
    for (const PageRecord& page : pages) {
        QJsonArray items;
        for (const AnswerItem& item : page.items)
            items.append(itemToJson(item));
        pageArray.append(QJsonObject{{QStringLiteral("page"), page.page},
                                     {QStringLiteral("title"), page.title},
                                     {QStringLiteral("tasks"), page.tasks},
                                     {QStringLiteral("correct"), page.correct},
                                     {QStringLiteral("items"), items}});
    }
    const QJsonObject root{
        {QStringLiteral("format"), QLatin1String(kFormat)},
        {QStringLiteral("version"), kVersion},
        {QStringLiteral("program"), program},
        {QStringLiteral("machine"), machine},
        {QStringLiteral("candidate"), candidate},
        {QStringLiteral("level"), levelName(expert)},
        {QStringLiteral("started"), started.toString(kTimeFormat)},
        {QStringLiteral("finished"), finished.toString(kTimeFormat)},
        {QStringLiteral("tasks"), tasks},
        {QStringLiteral("correct"), correct},
        {QStringLiteral("grade"), grade},
        {QStringLiteral("points"), points},
        {QStringLiteral("bank"),
         QJsonObject{{QStringLiteral("file"), bankFile}, {QStringLiteral("sha256"), bankSha256}}},
        {QStringLiteral("pages"), pageArray}};
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

std::optional<ResultRecord> ResultRecord::fromJson(const QByteArray& bytes, QString* why) {
    if (bytes.size() > kMaxFileBytes)
        return refuse(why, QStringLiteral("zu groß für eine Ergebnisdatei"));
    // JsonTree rather than QJsonDocument: the overview reads thousands of
    // these, and this reads them several times faster.
    const std::optional<JsonTree> tree = JsonTree::parse(bytes);
    if (!tree || !tree->root().isObject())
        return refuse(why, QStringLiteral("kein gültiges JSON (abgeschnitten oder beschädigt)"));
    const JsonTree::Value root = tree->root();
    if (root.member(QLatin1String("format")).toString() != QLatin1String(kFormat))
        return refuse(why, QStringLiteral("keine Ergebnisdatei des Laborix-Tests"));
    const JsonTree::Value version = root.member(QLatin1String("version"));
    if (!version.isNumber() || version.toNumber() != kVersion)
        return refuse(why, QStringLiteral("Version %1 wird nicht unterstützt")
                               .arg(version.isNumber() ? QString::number(version.toNumber())
                                                       : QStringLiteral("?")));
    ResultRecord r;
    QString level, started, finished;
    const JsonTree::Value pages = root.member(QLatin1String("pages"));
    const bool fields =
        readText(root, "program", &r.program) && readText(root, "machine", &r.machine) &&
        readText(root, "candidate", &r.candidate) && readText(root, "level", &level) &&
        readText(root, "started", &started) && readText(root, "finished", &finished) &&
        readCount(root, "tasks", &r.tasks) && readCount(root, "correct", &r.correct) &&
        readText(root, "grade", &r.grade) && readCount(root, "points", &r.points) &&
        pages.isArray();
    if (!fields || (level != QLatin1String("normal") && level != QLatin1String("expert")))
        return refuse(why, QStringLiteral("ein Pflichtfeld fehlt oder hat einen falschen Typ"));
    r.expert = level == QLatin1String("expert");
    r.started = QDateTime::fromString(started, kTimeFormat);
    r.finished = QDateTime::fromString(finished, kTimeFormat);
    if (!r.started.isValid() || !r.finished.isValid())
        return refuse(why, QStringLiteral("Beginn oder Ende ist keine gültige Zeitangabe"));
    const JsonTree::Value bank = root.member(QLatin1String("bank"));
    r.bankFile = bank.member(QLatin1String("file")).toString();
    r.bankSha256 = bank.member(QLatin1String("sha256")).toString();

    int taskSum = 0, correctSum = 0;
    for (const JsonTree::Value& po : pages.elements()) {
        PageRecord page;
        const JsonTree::Value items = po.member(QLatin1String("items"));
        if (!po.isObject() || !readCount(po, "page", &page.page) ||
            !readText(po, "title", &page.title) || !readCount(po, "tasks", &page.tasks) ||
            !readCount(po, "correct", &page.correct) || !items.isArray())
            return refuse(why, QStringLiteral("eine Seite ist unvollständig"));
        const QList<JsonTree::Value> itemValues = items.elements();
        page.items.reserve(itemValues.size());
        for (const JsonTree::Value& io : itemValues) {
            AnswerItem item;
            const JsonTree::Value right = io.member(QLatin1String("right"));
            if (!io.isObject() || !readText(io, "prompt", &item.prompt) ||
                !readText(io, "expected", &item.expected) || !readText(io, "given", &item.given) ||
                !right.isBool())
                return refuse(
                    why,
                    QStringLiteral("eine Aufgabe auf Seite %1 ist unvollständig").arg(page.page));
            item.right = right.toBool();
            item.hint = io.member(QLatin1String("hint")).toString();
            page.items.append(item);
        }
        if (page.correct > page.tasks)
            return refuse(
                why,
                QStringLiteral("Seite %1 hat mehr richtige als gestellte Aufgaben").arg(page.page));
        taskSum += page.tasks;
        correctSum += page.correct;
        r.pages.append(page);
    }
    if (r.correct > r.tasks || taskSum != r.tasks || correctSum != r.correct)
        return refuse(why,
                      QStringLiteral("die Summen der Seiten passen nicht zu den Gesamtzahlen"));
    return r;
}
