#include "overview/ClassTableModel.h"

#include "result/FinalGrade.h"

#include <QCollator>
#include <QLocale>
#include <algorithm>

namespace {

QString levelText(bool expert) {
    return expert ? QStringLiteral("Strebermodus") : QStringLiteral("normal");
}

bool rightAligned(int column) {
    return column == ClassTableModel::CTasks || column == ClassTableModel::CCorrect ||
           column == ClassTableModel::CShare || column == ClassTableModel::CPoints;
}

} // namespace

ClassTableModel::ClassTableModel(QObject* parent) : QAbstractItemModel(parent) {}

void ClassTableModel::setTests(const QList<ResultRecord>* records,
                               const QList<ClassSummary::Attempts>& attempts) {
    beginResetModel();
    m_records = records;
    m_groups.clear();
    m_groups.reserve(std::size_t(attempts.size()));
    QCollator collator(QLocale(QLocale::German, QLocale::Germany));
    for (const ClassSummary::Attempts& a : attempts) {
        // A single attempt sorts by the name as written in its file.
        const QString shown =
            a.tests.size() == 1 && records ? (*records)[a.tests.first()].candidate : a.name;
        m_groups.push_back({a.name, a.tests, collator.sortKey(shown)});
    }
    m_order.resize(m_groups.size());
    m_rowOf.resize(m_groups.size());
    for (std::size_t i = 0; i < m_groups.size(); ++i)
        m_order[i] = m_rowOf[i] = int(i);
    endResetModel();
}

QList<int> ClassTableModel::testsInOrder() const {
    QList<int> out;
    for (int g : m_order)
        out << m_groups[std::size_t(g)].tests;
    return out;
}

QModelIndex ClassTableModel::index(int row, int column, const QModelIndex& parent) const {
    if (column < 0 || column >= CCount || row < 0)
        return {};
    if (!parent.isValid())
        return row < int(m_order.size()) ? createIndex(row, column, quintptr(0)) : QModelIndex();
    if (parent.internalId() != 0 || parent.row() >= int(m_order.size()))
        return {};
    const int group = m_order[std::size_t(parent.row())];
    const Group& g = m_groups[std::size_t(group)];
    if (g.tests.size() < 2 || row >= g.tests.size())
        return {};
    return createIndex(row, column, quintptr(group) + 1);
}

QModelIndex ClassTableModel::parent(const QModelIndex& child) const {
    if (!child.isValid() || child.internalId() == 0)
        return {};
    const int group = int(child.internalId() - 1);
    return createIndex(m_rowOf[std::size_t(group)], 0, quintptr(0));
}

int ClassTableModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid())
        return int(m_order.size());
    if (parent.internalId() != 0 || parent.column() != 0)
        return 0;
    const Group& g = m_groups[std::size_t(m_order[std::size_t(parent.row())])];
    return g.tests.size() < 2 ? 0 : int(g.tests.size());
}

int ClassTableModel::columnCount(const QModelIndex&) const {
    return CCount;
}

Qt::ItemFlags ClassTableModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags f = QAbstractItemModel::flags(index);
    // The view need not ask a test's row for rows beneath it.
    if (index.isValid() && (index.internalId() != 0 || rowCount(index.siblingAtColumn(0)) == 0))
        f |= Qt::ItemNeverHasChildren;
    return f;
}

QVariant ClassTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const QStringList titles{
        QStringLiteral("Name"),           QStringLiteral("Datum"),    QStringLiteral("Uhrzeit"),
        QStringLiteral("Stufe"),          QStringLiteral("Aufgaben"), QStringLiteral("Richtig"),
        QStringLiteral("Anteil richtig"), QStringLiteral("Note"),     QStringLiteral("Punkte")};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= CCount)
        return {};
    return titles[section];
}

QVariant ClassTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || !m_records)
        return {};
    if (role == Qt::TextAlignmentRole)
        return int((rightAligned(index.column()) ? Qt::AlignRight : Qt::AlignLeft) |
                   Qt::AlignVCenter);
    if (index.internalId() != 0) {
        const Group& g = m_groups[index.internalId() - 1];
        return testData(g.tests[index.row()], index.column(), role);
    }
    const Group& g = m_groups[std::size_t(m_order[std::size_t(index.row())])];
    if (g.tests.size() == 1)
        return testData(g.tests.first(), index.column(), role);
    return groupData(g, index.column(), role);
}

QVariant ClassTableModel::testData(int test, int column, int role) const {
    if (role == RecordRole)
        return test;
    if (role != Qt::DisplayRole)
        return {};
    const ResultRecord& r = record(test);
    switch (column) {
    case CName:
        return r.candidate;
    case CDate:
        return r.finished.toString(QStringLiteral("dd.MM.yyyy"));
    case CTime:
        return r.finished.toString(QStringLiteral("HH:mm"));
    case CLevel:
        return levelText(r.expert);
    case CTasks:
        return QString::number(r.tasks);
    case CCorrect:
        return QString::number(r.correct);
    case CShare:
        return ClassSummary::percentText(r.share());
    case CGrade:
        return r.grade;
    case CPoints:
        return QString::number(r.points);
    }
    return {};
}

QVariant ClassTableModel::groupData(const Group& g, int column, int role) const {
    const ResultRecord& first = record(g.tests.first());
    const ResultRecord& last = record(g.tests.last());
    switch (role) {
    case RecordRole:
        return -1;
    case Qt::FontRole:
        return m_bold;
    case Qt::ToolTipRole:
        return QStringLiteral("Verlauf vom ersten zum letzten Versuch: ") +
               ClassSummary::trendText(first, last);
    case Qt::DisplayRole:
        break;
    default:
        return {};
    }
    switch (column) {
    case CName:
        return QStringLiteral("%1 (%2 Versuche)").arg(g.name).arg(g.tests.size());
    case CDate:
        return QStringLiteral("%1–%2").arg(first.finished.toString(QStringLiteral("dd.MM.")),
                                           last.finished.toString(QStringLiteral("dd.MM.yy")));
    case CLevel:
        return levelText(last.expert);
    case CShare:
        return QStringLiteral("%1 → %2").arg(ClassSummary::percentText(first.share()),
                                             ClassSummary::percentText(last.share()));
    case CGrade:
        // The latest grade; share and points show the way there.
        return QStringLiteral("zuletzt %1").arg(last.grade);
    case CPoints: {
        const int change = last.points - first.points;
        return QStringLiteral("%1 → %2 (%3)")
            .arg(first.points)
            .arg(last.points)
            .arg(change == 0  ? QStringLiteral("±0")
                 : change > 0 ? QStringLiteral("+%1").arg(change)
                              : QString::number(change));
    }
    default:
        return QString();
    }
}

double ClassTableModel::sortValue(int test, int column) const {
    const ResultRecord& r = record(test);
    switch (column) {
    case CDate:
        return double(r.finished.toSecsSinceEpoch());
    case CTime:
        return r.finished.time().msecsSinceStartOfDay();
    case CLevel:
        return r.expert;
    case CTasks:
        return r.tasks;
    case CCorrect:
        return r.correct;
    case CShare:
        return r.share();
    case CGrade:
        return ClassSummary::gradeStep(r);
    case CPoints:
        return r.points;
    default:
        return 0;
    }
}

void ClassTableModel::sort(int column, Qt::SortOrder order) {
    if (column < 0 || column >= CCount || !m_records)
        return;
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    // Where each shown row's test or group stood, to move the view's
    // current row and selection along with it.
    const QModelIndexList before = persistentIndexList();
    struct Place {
        int group;
        int test; // -1 for a top row
    };
    QList<Place> places;
    places.reserve(before.size());
    for (const QModelIndex& i : before) {
        if (i.internalId() == 0)
            places.append({m_order[std::size_t(i.row())], -1});
        else
            places.append({int(i.internalId() - 1), m_groups[i.internalId() - 1].tests[i.row()]});
    }

    const bool down = order == Qt::DescendingOrder;
    // Stable, so that equal rows keep their order (attempts stay in time).
    if (column == CName) {
        std::stable_sort(m_order.begin(), m_order.end(), [&](int a, int b) {
            const int c = m_groups[std::size_t(a)].key.compare(m_groups[std::size_t(b)].key);
            return down ? c > 0 : c < 0;
        });
        // A name's attempts then stand in the order they were written.
        for (Group& g : m_groups)
            std::stable_sort(g.tests.begin(), g.tests.end(),
                             [&](int a, int b) { return record(a).finished < record(b).finished; });
    } else {
        auto value = [&](int group) {
            return sortValue(m_groups[std::size_t(group)].tests.last(), column);
        };
        std::stable_sort(m_order.begin(), m_order.end(), [&](int a, int b) {
            return down ? value(a) > value(b) : value(a) < value(b);
        });
        for (Group& g : m_groups)
            std::stable_sort(g.tests.begin(), g.tests.end(), [&](int a, int b) {
                return down ? sortValue(a, column) > sortValue(b, column)
                            : sortValue(a, column) < sortValue(b, column);
            });
    }
    for (std::size_t row = 0; row < m_order.size(); ++row)
        m_rowOf[std::size_t(m_order[row])] = int(row);

    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype k = 0; k < before.size(); ++k) {
        const Place& p = places[k];
        const int column = before[k].column();
        if (p.test < 0)
            after << createIndex(m_rowOf[std::size_t(p.group)], column, quintptr(0));
        else
            after << createIndex(int(m_groups[std::size_t(p.group)].tests.indexOf(p.test)), column,
                                 quintptr(p.group) + 1);
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}
