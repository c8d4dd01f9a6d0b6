// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Music.h"

#include "Noise.h"

#include <QDataStream>
#include <QIODevice>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace DemoTrip {

namespace {

constexpr int rate = 44100;
constexpr double beat = 0.75;
constexpr int beatsPerBar = 4;

struct Chord {
    int bass;
    std::array<int, 4> tones;
};

/// MIDI note numbers, a bar each.
constexpr std::array<Chord, 12> chords{{
    {43, {55, 59, 62, 69}}, // G with a ninth
    {42, {57, 62, 66, 69}}, // D over F sharp
    {40, {55, 59, 62, 67}}, // E minor 7
    {36, {55, 60, 64, 71}}, // C major 7
    {43, {55, 59, 62, 67}}, // G
    {45, {57, 60, 64, 67}}, // A minor 7
    {36, {55, 60, 64, 67}}, // C
    {38, {57, 62, 67, 69}}, // D suspended
    {40, {55, 59, 64, 67}}, // E minor
    {36, {55, 60, 64, 71}}, // C major 7
    {45, {57, 60, 64, 69}}, // A minor
    {38, {57, 62, 66, 69}}, // D
}};

struct TuneNote {
    double atBeat;
    double beats;
    int note;
};
constexpr std::array tune{
    TuneNote{4, 1.5, 78},    TuneNote{5.5, 0.5, 76}, TuneNote{6, 2, 74},    TuneNote{8, 1.5, 71},
    TuneNote{9.5, 0.5, 74},  TuneNote{10, 2, 76},    TuneNote{12, 3, 79},   TuneNote{16, 1.5, 83},
    TuneNote{17.5, 0.5, 81}, TuneNote{18, 2, 79},    TuneNote{20, 1.5, 76}, TuneNote{21.5, 0.5, 79},
    TuneNote{22, 2, 81},     TuneNote{24, 3, 79},    TuneNote{28, 3, 74},   TuneNote{32, 1.5, 79},
    TuneNote{33.5, 0.5, 78}, TuneNote{34, 2, 76},    TuneNote{36, 1.5, 74}, TuneNote{37.5, 0.5, 71},
    TuneNote{38, 2, 72},     TuneNote{40, 2, 76},    TuneNote{42, 1, 72},   TuneNote{43, 1, 69},
    TuneNote{44, 3.5, 74},
};

double frequency(int note) {
    return 440 * std::pow(2.0, (note - 69) / 12.0);
}

/// Both channels; writing past the end goes on at the beginning.
class Tape {
public:
    explicit Tape(double seconds)
        : m_left(static_cast<std::size_t>(seconds * rate))
        , m_right(m_left.size()) {}

    /// `pan` -1 left … 1 right.
    void add(std::size_t at, double value, double pan) {
        const std::size_t index = at % m_left.size();
        m_left[index] += value * std::sqrt((1 - pan) / 2);
        m_right[index] += value * std::sqrt((1 + pan) / 2);
    }

    [[nodiscard]] std::size_t size() const { return m_left.size(); }
    std::vector<double>& left() { return m_left; }
    std::vector<double>& right() { return m_right; }

private:
    std::vector<double> m_left;
    std::vector<double> m_right;
};

/// A sine that is turned on from sample to sample.
class Oscillator {
public:
    Oscillator(double hertz, double phase)
        : m_cosine(std::cos(2 * M_PI * hertz / rate))
        , m_sine(std::sin(2 * M_PI * hertz / rate))
        , m_x(std::cos(phase))
        , m_y(std::sin(phase)) {}

    double next() {
        const double x = m_x * m_cosine - m_y * m_sine;
        m_y = m_x * m_sine + m_y * m_cosine;
        m_x = x;
        return m_y;
    }

private:
    double m_cosine;
    double m_sine;
    double m_x;
    double m_y;
};

/// A string: overtones that fade the faster the higher they are.
void pluck(Tape& tape, double start, int note, double loudness, double pan) {
    const double hertz = frequency(note);
    const auto from = static_cast<std::size_t>(start * rate);
    const auto length = static_cast<std::size_t>(3.0 * rate);
    for (int overtone = 1; overtone <= 7 && hertz * overtone < 9000; ++overtone) {
        // Real strings are a little stiff: their overtones are sharp.
        Oscillator wave(hertz * overtone * std::sqrt(1 + 0.0002 * overtone * overtone), 0);
        const double strength =
            loudness * std::abs(std::sin(overtone * M_PI * 0.23)) / std::pow(overtone, 1.25);
        const double decay = std::exp(-(1.5 + 0.9 * overtone) / rate);
        double envelope = strength;
        for (std::size_t i = 0; i < length; ++i, envelope *= decay) {
            const double attack = std::min(1.0, static_cast<double>(i) / (0.004 * rate));
            const double release = std::min(1.0, static_cast<double>(length - i) / (0.3 * rate));
            tape.add(from + i, wave.next() * envelope * attack * release, pan);
        }
    }
}

/// A held tone: soft edges, two voices a little apart.
void hold(Tape& tape, double start, double duration, int note, double loudness, double edge, double pan,
          double vibrato) {
    const auto from = static_cast<std::size_t>(start * rate);
    const auto length = static_cast<std::size_t>((duration + edge) * rate);
    const double hertz = frequency(note);
    double phase = 0;
    for (std::size_t i = 0; i < length; ++i) {
        const double time = static_cast<double>(i) / rate;
        const double rise = std::min(1.0, time / edge);
        const double fall = std::min(1.0, (duration + edge - time) / edge);
        const double envelope = loudness * 0.25 * (1 - std::cos(M_PI * rise)) * (1 - std::cos(M_PI * fall));
        phase += 2 * M_PI * hertz * (1 + vibrato * std::sin(2 * M_PI * 5.1 * time) * rise) / rate;
        const double tone = std::sin(phase) + 0.28 * std::sin(2 * phase) + 0.10 * std::sin(3 * phase) +
                            0.5 * std::sin(phase * 1.0031 + 1);
        tape.add(from + i, tone * envelope, pan);
    }
}

/// The room: combs and all-passes. Run twice over the loop, so that its beginning hears the end.
std::vector<double> reverberated(const std::vector<double>& dry, int spread) {
    struct Line {
        std::vector<double> samples;
        std::size_t position = 0;
        double damped = 0;

        explicit Line(int length)
            : samples(static_cast<std::size_t>(length)) {}
        double& current() { return samples[position]; }
        void advance() { position = (position + 1) % samples.size(); }
    };
    std::vector<Line> combs;
    for (const int length : {1557, 1617, 1491, 1422, 1277, 1356})
        combs.emplace_back(length + spread);
    std::vector<Line> allPasses;
    for (const int length : {225, 556, 441})
        allPasses.emplace_back(length + spread);

    std::vector<double> wet(dry.size());
    for (int round = 0; round < 2; ++round) {
        for (std::size_t i = 0; i < dry.size(); ++i) {
            double sum = 0;
            for (Line& comb : combs) {
                const double out = comb.current();
                comb.damped = out * 0.65 + comb.damped * 0.35;
                comb.current() = dry[i] + comb.damped * 0.83;
                comb.advance();
                sum += out;
            }
            for (Line& pass : allPasses) {
                const double delayed = pass.current();
                pass.current() = sum + delayed * 0.5;
                sum = delayed - sum * 0.5;
                pass.advance();
            }
            wet[i] = sum;
        }
    }
    return wet;
}

} // namespace

QByteArray music() {
    const double bar = beat * beatsPerBar;
    Tape tape(bar * static_cast<double>(chords.size()));
    Random random(7);
    // Up and down through the chord in eighths, the last of them an octave higher.
    constexpr std::array pattern{0, 2, 1, 3, 2, 3, 1, 2};
    for (std::size_t b = 0; b < chords.size(); ++b) {
        const double start = static_cast<double>(b) * bar;
        const Chord& chord = chords[b];
        for (std::size_t i = 0; i < pattern.size(); ++i) {
            const int tone = pattern[i];
            const bool isHigh = i == 3 || i == 5;
            // Nobody plays like a machine.
            const double lag = random.between(0, 0.014);
            pluck(tape, start + static_cast<double>(i) * beat / 2 + lag,
                  chord.tones[static_cast<std::size_t>(tone)] + (isHigh ? 12 : 0),
                  (i == 0 ? 0.30 : 0.22) * random.between(0.85, 1.1) * (isHigh ? 0.7 : 1),
                  -0.45 + 0.3 * tone);
        }
        pluck(tape, start, chord.bass, 0.42, 0);
        pluck(tape, start + 2.5 * beat, chord.bass + 7 * (b % 2 == 0), 0.24, 0);
        for (std::size_t tone = 0; tone < chord.tones.size(); ++tone)
            hold(tape, start - 0.2 + (b == 0 ? bar * static_cast<double>(chords.size()) : 0), bar - 0.2,
                 chord.tones[tone], 0.024, 0.7, tone % 2 == 0 ? -0.6 : 0.6, 0);
        hold(tape, start, bar - 0.3, chord.bass, 0.05, 0.35, 0, 0);
    }
    for (const TuneNote& note : tune)
        hold(tape, note.atBeat * beat, note.beats * beat - 0.08, note.note, 0.075, 0.11, 0.18, 0.0035);

    const std::vector<double> left = reverberated(tape.left(), 0);
    const std::vector<double> right = reverberated(tape.right(), 23);
    double peak = 0;
    for (std::size_t i = 0; i < tape.size(); ++i) {
        tape.left()[i] += 0.045 * left[i];
        tape.right()[i] += 0.045 * right[i];
        peak = std::max({peak, std::abs(tape.left()[i]), std::abs(tape.right()[i])});
    }
    const double gain = 0.8 * 32767 / peak;

    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    const auto dataSize = static_cast<quint32>(tape.size() * 4);
    stream.writeRawData("RIFF", 4);
    stream << quint32(36 + dataSize);
    stream.writeRawData("WAVEfmt ", 8);
    stream << quint32(16) << quint16(1) << quint16(2) << quint32(rate) << quint32(rate * 4) << quint16(4)
           << quint16(16);
    stream.writeRawData("data", 4);
    stream << dataSize;
    for (std::size_t i = 0; i < tape.size(); ++i)
        stream << static_cast<qint16>(std::lround(tape.left()[i] * gain))
               << static_cast<qint16>(std::lround(tape.right()[i] * gain));
    return bytes;
}

} // namespace DemoTrip
