#include "result/ResultRecord.h"

#include "result/FinalGrade.h"
#include "session/SessionState.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

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
bool readCount(const QJsonObject& o, const char* key, int* out) {
    const QJsonValue v = o.value(QLatin1String(key));
    if (!v.isDouble())
        return false;
    const double d = v.toDouble();
    if (d < 0 || d > 1'000'000 || d != double(qint64(d)))
        return false;
    *out = int(d);
    return true;
}

bool readText(const QJsonObject& o, const char* key, QString* out) {
    const QJsonValue v = o.value(QLatin1String(key));
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
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !doc.isObject())
        return refuse(why, QStringLiteral("kein gültiges JSON (abgeschnitten oder beschädigt)"));
    const QJsonObject root = doc.object();
    if (root.value(QStringLiteral("format")).toString() != QLatin1String(kFormat))
        return refuse(why, QStringLiteral("keine Ergebnisdatei des Laborix-Tests"));
    const QJsonValue version = root.value(QStringLiteral("version"));
    if (!version.isDouble() || version.toDouble() != kVersion)
        return refuse(why, QStringLiteral("Version %1 wird nicht unterstützt")
                               .arg(version.isDouble() ? QString::number(version.toDouble())
                                                       : QStringLiteral("?")));
    ResultRecord r;
    QString level, started, finished;
    const bool fields =
        readText(root, "program", &r.program) && readText(root, "machine", &r.machine) &&
        readText(root, "candidate", &r.candidate) && readText(root, "level", &level) &&
        readText(root, "started", &started) && readText(root, "finished", &finished) &&
        readCount(root, "tasks", &r.tasks) && readCount(root, "correct", &r.correct) &&
        readText(root, "grade", &r.grade) && readCount(root, "points", &r.points) &&
        root.value(QStringLiteral("pages")).isArray();
    if (!fields || (level != QLatin1String("normal") && level != QLatin1String("expert")))
        return refuse(why, QStringLiteral("ein Pflichtfeld fehlt oder hat einen falschen Typ"));
    r.expert = level == QLatin1String("expert");
    r.started = QDateTime::fromString(started, kTimeFormat);
    r.finished = QDateTime::fromString(finished, kTimeFormat);
    if (!r.started.isValid() || !r.finished.isValid())
        return refuse(why, QStringLiteral("Beginn oder Ende ist keine gültige Zeitangabe"));
    const QJsonObject bank = root.value(QStringLiteral("bank")).toObject();
    r.bankFile = bank.value(QStringLiteral("file")).toString();
    r.bankSha256 = bank.value(QStringLiteral("sha256")).toString();

    int taskSum = 0, correctSum = 0;
    for (const QJsonValue& pv : root.value(QStringLiteral("pages")).toArray()) {
        const QJsonObject po = pv.toObject();
        PageRecord page;
        if (!pv.isObject() || !readCount(po, "page", &page.page) ||
            !readText(po, "title", &page.title) || !readCount(po, "tasks", &page.tasks) ||
            !readCount(po, "correct", &page.correct) ||
            !po.value(QStringLiteral("items")).isArray())
            return refuse(why, QStringLiteral("eine Seite ist unvollständig"));
        for (const QJsonValue& iv : po.value(QStringLiteral("items")).toArray()) {
            const QJsonObject io = iv.toObject();
            AnswerItem item;
            const QJsonValue right = io.value(QStringLiteral("right"));
            if (!iv.isObject() || !readText(io, "prompt", &item.prompt) ||
                !readText(io, "expected", &item.expected) || !readText(io, "given", &item.given) ||
                !right.isBool())
                return refuse(
                    why,
                    QStringLiteral("eine Aufgabe auf Seite %1 ist unvollständig").arg(page.page));
            item.right = right.toBool();
            item.hint = io.value(QStringLiteral("hint")).toString();
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
