#pragma once

#include "overview/ClassSummary.h"
#include "result/ResultRecord.h"

#include <QAbstractItemModel>
#include <QCollatorSortKey>
#include <QFont>
#include <vector>

// The class table: a row for every name, and beneath a name with several
// attempts one row per attempt. A row's texts are made only when the view
// draws it and sorting moves numbers, not items, so a school year of results
// fills the table without the window standing still.
class ClassTableModel final : public QAbstractItemModel {
    Q_OBJECT
public:
    enum Column { CName, CDate, CTime, CLevel, CTasks, CCorrect, CShare, CGrade, CPoints, CCount };
    // The index of a row's test in the records; -1 on a name's row above
    // several attempts.
    static constexpr int RecordRole = Qt::UserRole + 1;

    explicit ClassTableModel(QObject* parent = nullptr);

    // The records stay the caller's and must outlive the next setTests;
    // nullptr and no attempts empty the table.
    void setTests(const QList<ResultRecord>* records,
                  const QList<ClassSummary::Attempts>& attempts);
    void setBoldFont(const QFont& font) { m_bold = font; }
    // Every test's index in the order the rows stand now.
    QList<int> testsInOrder() const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
    struct Group {
        QString name;
        QList<int> tests; // indexes into the records, in the order shown
        QCollatorSortKey key;
    };
    const ResultRecord& record(int test) const { return (*m_records)[test]; }
    QVariant groupData(const Group& group, int column, int role) const;
    QVariant testData(int test, int column, int role) const;
    // What a column sorts by; a name's row sorts as its last attempt.
    double sortValue(int test, int column) const;

    const QList<ResultRecord>* m_records = nullptr;
    std::vector<Group> m_groups;
    std::vector<int> m_order; // the groups in the order shown
    std::vector<int> m_rowOf; // a group's row in m_order
    QFont m_bold;
};
