#include "overview/ClassSummary.h"

#include "result/FinalGrade.h"

#include <QCollator>
#include <QHash>
#include <QLocale>
#include <algorithm>

namespace {

struct TaskCount {
    int page = 0;
    QString prompt;
    int asked = 0;
    int wrong = 0;
    QHash<QString, int> expected;
    QHash<QString, int> given; // wrong answers only
};

} // namespace

bool TestFilter::accepts(const ResultRecord& record) const {
    if (level == Level::Normal && record.expert)
        return false;
    if (level == Level::Expert && !record.expert)
        return false;
    const QDate day = record.finished.date();
    if (from.isValid() && day < from)
        return false;
    if (to.isValid() && day > to)
        return false;
    return name.trimmed().isEmpty() ||
           record.candidate.contains(name.trimmed(), Qt::CaseInsensitive);
}

int ClassSummary::pageIndex(int page) {
    const auto at = std::find(kPageOrder.begin(), kPageOrder.end(), page);
    return at == kPageOrder.end() ? -1 : int(at - kPageOrder.begin());
}

QString ClassSummary::nameKey(const QString& name) {
    return name.simplified().toLower();
}

int ClassSummary::gradeStep(const ResultRecord& record) {
    const int step = FinalGrade::stepOf(record.grade);
    return step >= 0 ? step : std::clamp(record.points, 0, kGradeSteps - 1);
}

QString ClassSummary::percentText(double share) {
    // Made once: the class table asks for thousands of these.
    static const QLocale german(QLocale::German, QLocale::Germany);
    return german.toString(share * 100.0, 'f', 1) + QStringLiteral(" %");
}

QString ClassSummary::trendText(const ResultRecord& first, const ResultRecord& last) {
    return QStringLiteral("%1 → %2 (%3 → %4)")
        .arg(percentText(first.share()), percentText(last.share()), first.grade, last.grade);
}

QString ClassSummary::wrongAnswersText(const QList<WrongAnswer>& answers) {
    QStringList parts;
    for (const WrongAnswer& a : answers)
        parts << (a.given.isEmpty() ? QStringLiteral("keine Antwort %1×").arg(a.count)
                                    : QStringLiteral("„%1“ %2×").arg(a.given).arg(a.count));
    return parts.join(QStringLiteral(", "));
}

QList<int> ClassSummary::testsByName() const {
    QList<int> out;
    out.reserve(tests.size());
    for (const Attempts& a : attempts)
        out << a.tests;
    return out;
}

ClassSummary ClassSummary::of(const QList<ResultRecord>& records, const TestFilter& filter) {
    ClassSummary s;
    for (int i = 0; i < records.size(); ++i)
        if (filter.accepts(records[i]))
            s.tests << i;
    std::stable_sort(s.tests.begin(), s.tests.end(), [&records](int a, int b) {
        return records[a].finished < records[b].finished;
    });

    for (int page : kPageOrder)
        s.pages.append({page, pageTitle(page), 0, 0});

    QHash<QString, int> attemptsOf; // name key → index into s.attempts
    QHash<QPair<int, QString>, int> taskOf;
    QList<TaskCount> counts;
    for (int index : s.tests) {
        const ResultRecord& r = records[index];
        const QString key = nameKey(r.candidate);
        const auto found = attemptsOf.constFind(key);
        if (found == attemptsOf.constEnd()) {
            attemptsOf.insert(key, int(s.attempts.size()));
            s.attempts.append({r.candidate.simplified(), {index}});
        } else {
            Attempts& a = s.attempts[*found];
            a.tests << index;
            a.name = r.candidate.simplified();
        }
        ++s.grades[std::size_t(gradeStep(r))];
        s.tasks += r.tasks;
        s.correct += r.correct;
        for (const PageRecord& page : r.pages) {
            const int at = pageIndex(page.page);
            if (at >= 0) {
                s.pages[at].tasks += page.tasks;
                s.pages[at].correct += page.correct;
            }
            for (const AnswerItem& item : page.items) {
                const QPair<int, QString> taskKey(page.page, item.prompt.trimmed());
                auto t = taskOf.constFind(taskKey);
                if (t == taskOf.constEnd()) {
                    t = taskOf.insert(taskKey, int(counts.size()));
                    counts.append({page.page, taskKey.second, 0, 0, {}, {}});
                }
                TaskCount& c = counts[*t];
                ++c.asked;
                ++c.expected[item.expected];
                if (!item.right) {
                    ++c.wrong;
                    ++c.given[item.given.trimmed()];
                }
            }
        }
    }

    const QCollator collator(QLocale(QLocale::German, QLocale::Germany));
    std::stable_sort(s.attempts.begin(), s.attempts.end(),
                     [&collator](const Attempts& a, const Attempts& b) {
                         return collator.compare(a.name, b.name) < 0;
                     });

    // The most frequent of several texts; the smallest text among equals, so
    // that the answer does not depend on the order of the files.
    auto byCount = [](const QHash<QString, int>& hash) {
        QList<WrongAnswer> list;
        list.reserve(hash.size());
        for (auto it = hash.constBegin(); it != hash.constEnd(); ++it)
            list.append({it.key(), it.value()});
        std::sort(list.begin(), list.end(), [](const WrongAnswer& a, const WrongAnswer& b) {
            return a.count != b.count ? a.count > b.count : a.given < b.given;
        });
        return list;
    };
    for (const TaskCount& c : counts) {
        if (c.wrong == 0)
            continue;
        HardTask task{c.page, c.prompt, byCount(c.expected).value(0).given, c.asked, c.wrong, {}};
        task.wrongAnswers = byCount(c.given).mid(0, kWrongAnswersShown);
        s.hardTasks.append(task);
    }
    std::sort(s.hardTasks.begin(), s.hardTasks.end(), [](const HardTask& a, const HardTask& b) {
        if (a.wrong != b.wrong)
            return a.wrong > b.wrong;
        // Compared as fractions, exactly: a.wrong / a.asked > b.wrong / b.asked.
        const qint64 left = qint64(a.wrong) * b.asked, right = qint64(b.wrong) * a.asked;
        if (left != right)
            return left > right;
        if (a.page != b.page)
            return pageIndex(a.page) < pageIndex(b.page);
        return a.prompt < b.prompt;
    });
    return s;
}
