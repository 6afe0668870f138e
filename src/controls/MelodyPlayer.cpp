#include "controls/MelodyPlayer.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QBuffer>
#include <QMediaDevices>
#include <QtEndian>
#include <cmath>

namespace {

struct Melody {
    const char* name;
    const char* tune;
};

// Tempo: a quarter note lasts 60/bpm seconds; every tune starts with "bpm:N".
const Melody kMelodies[] = {
    {"Ode an die Freude",
     "bpm:132 e4:4 e4:4 f4:4 g4:4 g4:4 f4:4 e4:4 d4:4 c4:4 c4:4 d4:4 e4:4 e4:4. d4:8 d4:2"},
    {"Tusch", "bpm:160 c4:8 e4:8 g4:8 c5:8 r:8 g4:8 c5:2"},
    {"Eine kleine Nachtmusik", "bpm:140 g4:4 r:8 d4:8 g4:4 r:8 d4:8 g4:8 d4:8 g4:8 b4:8 d5:2"},
    {"Triumphmarsch (Aida)", "bpm:112 b4:4 g4:8. a4:16 b4:4 g4:8. a4:16 b4:8 a4:8 g4:8 f#4:8 g4:2"},
    {"Alle meine Entchen", "bpm:150 c4:8 d4:8 e4:8 f4:8 g4:4 g4:4 a4:8 a4:8 a4:8 a4:8 g4:2"},
    {"Fanfare", "bpm:120 g4:8 g4:8 g4:8 c5:2 r:8 g4:8 c5:8 e5:2"},
};

int semitoneOf(QStringView name) {
    static const int base[] = {9, 11, 0, 2, 4, 5, 7}; // a b c d e f g
    if (name.isEmpty())
        return -1000;
    const char16_t c = name.at(0).toLower().unicode();
    if (c < u'a' || c > u'g')
        return -1000;
    int s = base[c - u'a'];
    for (qsizetype i = 1; i < name.size(); ++i) {
        if (name.at(i) == u'#')
            ++s;
        else if (name.at(i) == u'b' && i > 0)
            --s;
    }
    return s;
}

} // namespace

MelodyPlayer::MelodyPlayer(QObject* parent) : QObject(parent) {}
MelodyPlayer::~MelodyPlayer() {
    stop();
}

QStringList MelodyPlayer::melodyNames() {
    QStringList names;
    for (const Melody& m : kMelodies)
        names << QString::fromUtf8(m.name);
    return names;
}

QString MelodyPlayer::tuneOf(int index) {
    if (index < 0 || index >= int(std::size(kMelodies)))
        return {};
    return QString::fromLatin1(kMelodies[index].tune);
}

QByteArray MelodyPlayer::render(const QString& tune, int sampleRate, int* notes) {
    QByteArray pcm;
    double bpm = 120;
    int count = 0;
    const QStringList words = tune.split(u' ', Qt::SkipEmptyParts);
    for (const QString& word : words) {
        if (word.startsWith(QLatin1String("bpm:"))) {
            bool ok = false;
            const double v = word.mid(4).toDouble(&ok);
            if (ok && v > 10 && v < 600)
                bpm = v;
            continue;
        }
        const qsizetype colon = word.indexOf(u':');
        if (colon <= 0)
            continue;
        QStringView pitch = QStringView(word).left(colon);
        QStringView len = QStringView(word).mid(colon + 1);
        const bool dotted = len.endsWith(u'.');
        if (dotted)
            len.chop(1);
        bool ok = false;
        const int division = len.toInt(&ok);
        if (!ok || division <= 0 || division > 64)
            continue;
        double seconds = 60.0 / bpm * 4.0 / division * (dotted ? 1.5 : 1.0);
        double frequency = 0;
        if (pitch != u"r") {
            const QChar octaveChar = pitch.back();
            if (!octaveChar.isDigit())
                continue;
            const int octave = octaveChar.digitValue();
            const int semitone = semitoneOf(pitch.chopped(1));
            if (semitone < -100)
                continue;
            const int midi = 12 * (octave + 1) + semitone;
            frequency = 440.0 * std::pow(2.0, (midi - 69) / 12.0);
        }
        const int samples = int(seconds * sampleRate);
        const qsizetype start = pcm.size();
        pcm.resize(start + qsizetype(samples) * 2);
        auto* out = reinterpret_cast<qint16*>(pcm.data() + start);
        for (int i = 0; i < samples; ++i) {
            double v = 0;
            if (frequency > 0) {
                const double t = double(i) / sampleRate;
                // A few odd harmonics give a friendly, slightly reedy tone;
                // the envelope avoids clicks between notes.
                const double w = 2 * M_PI * frequency * t;
                v = std::sin(w) + 0.3 * std::sin(3 * w) + 0.12 * std::sin(5 * w);
                const double attack = std::min(1.0, i / (0.01 * sampleRate));
                const double release = std::min(1.0, (samples - i) / (0.03 * sampleRate));
                v *= 0.22 * attack * release;
            }
            out[i] = qToLittleEndian<qint16>(qint16(std::lround(v * 32767)));
        }
        ++count;
    }
    if (notes)
        *notes = count;
    return pcm;
}

bool MelodyPlayer::play(int index) {
    const QString tune = tuneOf(index);
    if (tune.isEmpty())
        return false;
    stop();
    const QAudioDevice device = QMediaDevices::defaultAudioOutput();
    if (device.isNull())
        return false;
    QAudioFormat format;
    format.setSampleRate(22050);
    format.setChannelCount(1);
    format.setSampleFormat(QAudioFormat::Int16);
    if (!device.isFormatSupported(format))
        return false;
    m_pcm = render(tune, format.sampleRate());
    m_buffer = std::make_unique<QBuffer>(&m_pcm);
    m_buffer->open(QIODevice::ReadOnly);
    m_sink = std::make_unique<QAudioSink>(device, format);
    m_sink->start(m_buffer.get());
    return m_sink->error() == QAudio::NoError;
}

void MelodyPlayer::stop() {
    if (m_sink)
        m_sink->stop();
    m_sink.reset();
    m_buffer.reset();
}

bool MelodyPlayer::isPlaying() const {
    return m_sink && m_sink->state() == QAudio::ActiveState;
}
