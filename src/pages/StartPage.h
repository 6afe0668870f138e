#pragma once

#include <QWidget>

class CandidateRecords;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class TestFlow;

// Page 0: the candidate's name (typed or picked from earlier ones), the
// level, and the praise melody; "OkS0" starts the test.
class StartPage final : public QWidget {
    Q_OBJECT
public:
    StartPage(TestFlow& flow, CandidateRecords& info, QWidget* parent, QLabel* streberMarker);

    // Selects the level option with this index (from the remembered level).
    void presetLevel(int level);
    void fillNames();
    // GenerateTest's block for page 0.
    void generate();

    // Handlers, callable by tests too.
    void OkS0_Click();
    void L_schen_Click();
    void Liste_DblClick();
    void Expert_Click(int index);

    int chosenMelody() const;
    QString caption() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    TestFlow& m_flow;
    CandidateRecords& m_info;
    QLabel* m_streber;
    QLineEdit* m_name;
    QListWidget* m_list;
    QPushButton* m_delete;
    QRadioButton* m_level[2];
    QComboBox* m_melody;
    QPushButton* m_start;
};
