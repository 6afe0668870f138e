#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

class QAudioSink;
class QBuffer;

// Plays the praise melodies. Tunes are written as note names with octave
// and length ("g4:8" = g of the fourth octave, an eighth; "r:4" = rest) and
// rendered to a soft square-ish tone; no sound files are needed.
class MelodyPlayer final : public QObject {
    Q_OBJECT
public:
    explicit MelodyPlayer(QObject* parent = nullptr);
    ~MelodyPlayer() override;

    static QStringList melodyNames();
    static QString tuneOf(int index);

    // Renders a tune to 16-bit mono PCM at the given rate; an unreadable
    // note is skipped. Exposed so that tests can check the rendering.
    static QByteArray render(const QString& tune, int sampleRate, int* notes = nullptr);

    // Starts playing the melody with this index; false when there is no
    // audio output or no such melody.
    bool play(int index);
    void stop();
    bool isPlaying() const;

private:
    std::unique_ptr<QAudioSink> m_sink;
    std::unique_ptr<QBuffer> m_buffer;
    QByteArray m_pcm;
};
