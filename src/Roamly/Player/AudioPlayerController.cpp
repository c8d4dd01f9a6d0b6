// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Player/AudioPlayerController.h>
#include <Roamly/Player/MusicStream.h>

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QIODevice>
#include <QMediaDevices>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

namespace Player {

namespace {

using Export::StereoSample;

/// About 200 ms.
constexpr int bufferSamples = Export::audioSampleRate / 5;

/// What the sound system reads from: samples that never end.
class StreamDevice : public QIODevice {
public:
    StreamDevice(MusicStream& stream, QAudioFormat::SampleFormat format)
        : m_stream(stream)
        , m_isFloat(format == QAudioFormat::Float) {
        open(QIODevice::ReadOnly);
    }

    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] qint64 bytesAvailable() const override {
        return bufferSamples * frameBytes() + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char* data, qint64 most) override {
        m_samples.resize(static_cast<std::size_t>(most / frameBytes()));
        m_stream.read(m_samples);
        if (m_isFloat) {
            std::memcpy(data, m_samples.data(), m_samples.size() * sizeof(StereoSample));
        } else {
            m_words.clear();
            for (const StereoSample& sample : m_samples) {
                m_words.push_back(word(sample.left));
                m_words.push_back(word(sample.right));
            }
            std::memcpy(data, m_words.data(), m_words.size() * sizeof(std::int16_t));
        }
        return static_cast<qint64>(m_samples.size()) * frameBytes();
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    [[nodiscard]] qint64 frameBytes() const { return m_isFloat ? 8 : 4; }
    [[nodiscard]] static std::int16_t word(float sample) {
        return static_cast<std::int16_t>(std::lround(sample * 32767));
    }

    MusicStream& m_stream;
    bool m_isFloat;
    std::vector<StereoSample> m_samples;
    std::vector<std::int16_t> m_words;
};

/// A format of ours that the device plays.
std::optional<QAudioFormat> formatFor(const QAudioDevice& device) {
    QAudioFormat format;
    format.setSampleRate(Export::audioSampleRate);
    format.setChannelCount(2);
    for (const auto samples : {QAudioFormat::Float, QAudioFormat::Int16}) {
        format.setSampleFormat(samples);
        if (device.isFormatSupported(format))
            return format;
    }
    return std::nullopt;
}

} // namespace

struct AudioPlayerController::State {
    State(const std::filesystem::path& music, const Timeline::AudioPlan& plan)
        : stream(music, plan) {
        QObject::connect(&devices, &QMediaDevices::audioOutputsChanged, &devices, [this] { openDevice(); });
        openDevice();
    }

    void openDevice() {
        sink.reset();
        source.reset();
        if (QMediaDevices::audioOutputs().isEmpty())
            return;
        const QAudioDevice device = QMediaDevices::defaultAudioOutput();
        const auto format = formatFor(device);
        if (!format)
            return;
        source.emplace(stream, format->sampleFormat());
        sink.emplace(device, *format);
        sink->setBufferSize(format->bytesForFrames(bufferSamples));
        // One that fails stops by itself, and the picture goes on.
        sink->start(&*source);
    }

    [[nodiscard]] double latency() const {
        return sink ? static_cast<double>(
                          sink->format().durationForBytes(static_cast<qint32>(sink->bufferSize()))) /
                          1e6
                    : 0;
    }

    MusicStream stream;
    QMediaDevices devices;
    std::optional<StreamDevice> source;
    std::optional<QAudioSink> sink;
};

AudioPlayerController::AudioPlayerController(const std::filesystem::path& music,
                                             const Timeline::AudioPlan& plan)
    : m_state(std::make_unique<State>(music, plan)) {}

AudioPlayerController::~AudioPlayerController() = default;

void AudioPlayerController::play(double time) {
    scrub(time);
    m_state->stream.setPlaying(true);
}

void AudioPlayerController::pause() {
    m_state->stream.setPlaying(false);
}

void AudioPlayerController::setMuted(bool isMuted) {
    m_state->stream.setMuted(isMuted);
}

void AudioPlayerController::scrub(double time) {
    m_state->stream.seek(time + m_state->latency());
}

void AudioPlayerController::stop(double fade) {
    m_state->stream.fadeOut(fade);
}

double AudioPlayerController::latency() const {
    return m_state->latency();
}

} // namespace Player
