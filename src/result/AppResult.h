#pragma once

#include "result/FinalGrade.h"

#include <QDialog>
#include <functional>

class QFrame;
class QLabel;
class QPushButton;
class Mascot;
class MelodyPlayer;
class NameLabel;
struct SessionState;

// frm_AppResult: the certificate at the end of a test. It states the count
// of right answers, the grade word, date, times and level, lets Dr. Quark
// react, awards the title and the praise melody for a very good result,
// prints itself, and ends with "Neue Übung?".
class AppResult final : public QDialog {
    Q_OBJECT
public:
    static constexpr int kFrameWidth = 880;
    static constexpr int kFrameHeight = 620;

    // melody: the entry chosen in the start page's melody list.
    AppResult(SessionState& state, const FinalResult& result, int melody,
              QWidget* parent = nullptr);
    ~AppResult() override;

    // How the melody is played, how the program ends, and where printing
    // looks for a printer and a documents folder; tests replace them.
    void setPlayer(std::function<bool(int melody)> player) { m_player = std::move(player); }
    void setQuitter(std::function<void()> quit) { m_quit = std::move(quit); }
    void setPrinterCheck(std::function<bool()> check) { m_printerCheck = std::move(check); }
    void setDocumentsFolder(const QString& folder) { m_documentsFolder = folder; }
    // How "Fehler üben" in the review of mistakes runs a practice round over
    // the window it is given; without it the review offers none.
    void setPractice(std::function<void(QWidget*)> practise) { m_practise = std::move(practise); }

    bool quitRequested() const { return m_quitRequested; }
    bool melodyPlayed() const { return m_melodyPlayed; }
    // The PDF the last print wrote, empty after a print on paper.
    QString lastPdf() const { return m_lastPdf; }

    // Handlers, callable by tests too.
    void Druck_Click();
    void Musik_Click();
    void CSCmd1_Click();
    void CSCmd3_Click();
    // "Fehler ansehen": the review of every wrong answer.
    void showMistakes();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void buildCertificate();
    void fillIn(const FinalResult& result);
    void centreFrame();
    void maximise();
    QString printCertificate(QString* notice);

    SessionState& m_state;
    int m_melody;
    bool m_melodyPlayed = false;
    bool m_quitRequested = false;
    QString m_lastPdf;
    std::function<bool(int)> m_player;
    std::function<void()> m_quit;
    std::function<bool()> m_printerCheck;
    QString m_documentsFolder;
    std::function<void(QWidget*)> m_practise;
    MelodyPlayer* m_melodyPlayer = nullptr;

    QFrame* m_frame = nullptr;
    Mascot* m_mascot = nullptr;
    NameLabel* m_name = nullptr;
    QLabel* m_texturt[3] = {};
    QLabel* m_streb = nullptr;
    QLabel* m_titel[2] = {};
    QPushButton* m_druck = nullptr;
    QPushButton* m_musik = nullptr;
    QPushButton* m_review = nullptr;
    QFrame* m_neute = nullptr;
};
