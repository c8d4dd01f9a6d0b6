// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/AudioGain.h>
#include <Export/ExportError.h>
#include <Roamly/Player/MusicStream.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Player {

namespace {

using Export::audioSampleRate;
using Export::StereoSample;

/// Against clicks: 10 ms.
constexpr std::size_t shortFade = audioSampleRate / 100;
constexpr float shortSlope = 1.0F / static_cast<float>(shortFade);
/// Decoded ahead: a second.
constexpr std::size_t mostReady = audioSampleRate;

float sound(float sample) {
    return std::isfinite(sample) ? std::clamp(sample, -1.0F, 1.0F) : 0.0F;
}

StereoSample scaled(const StereoSample& sample, float gain) {
    return {sound(sample.left * gain), sound(sample.right * gain)};
}

} // namespace

MusicStream::MusicStream(std::filesystem::path music, Timeline::AudioPlan plan)
    : m_music(std::move(music))
    , m_plan(std::move(plan))
    , m_slope(shortSlope)
    , m_thread([this](const std::stop_token& stop) { run(stop); }) {}

MusicStream::~MusicStream() = default;

void MusicStream::setPlaying(bool isPlaying) {
    const std::lock_guard lock(m_mutex);
    m_isPlaying = isPlaying;
}

void MusicStream::setMuted(bool isMuted) {
    const std::lock_guard lock(m_mutex);
    m_isMuted = isMuted;
}

void MusicStream::fadeOut(double seconds) {
    const std::lock_guard lock(m_mutex);
    m_isLeaving = true;
    m_slope = static_cast<float>(1 / std::max(1.0, seconds * audioSampleRate));
}

void MusicStream::seek(double time) {
    {
        const std::lock_guard lock(m_mutex);
        m_seek = std::llround(std::max(0.0, time) * audioSampleRate);
        m_owed = 0;
        // The place before is heard a moment longer, ever softer.
        m_tail = m_isPlaying ? std::min(m_ready.size(), shortFade) : 0;
        m_ready.resize(m_tail);
        for (std::size_t i = 0; i < m_tail; ++i)
            m_ready[i] = scaled(m_ready[i], 1 - static_cast<float>(i + 1) / static_cast<float>(m_tail));
    }
    m_wake.notify_one();
}

std::size_t MusicStream::available() const {
    const std::lock_guard lock(m_mutex);
    return m_ready.size() - std::min(m_ready.size(), m_owed);
}

StereoSample MusicStream::nextSample() {
    if (m_tail == 0) {
        const std::size_t late = std::min(m_owed, m_ready.size());
        m_ready.erase(m_ready.begin(), m_ready.begin() + static_cast<std::ptrdiff_t>(late));
        m_owed -= late;
    }
    if (m_ready.empty()) {
        ++m_owed;
        m_fadingIn = shortFade;
        return {};
    }
    StereoSample sample = m_ready.front();
    m_ready.pop_front();
    if (m_tail > 0) {
        // The new place begins under it.
        --m_tail;
        ++m_owed;
        m_fadingIn = shortFade;
    } else if (m_fadingIn > 0) {
        --m_fadingIn;
        sample = scaled(sample, 1 - static_cast<float>(m_fadingIn) * shortSlope);
    }
    return sample;
}

void MusicStream::read(std::span<StereoSample> out) {
    {
        const std::lock_guard lock(m_mutex);
        for (StereoSample& sample : out) {
            const float wanted = m_isPlaying && !m_isMuted && !m_isLeaving ? 1.0F : 0.0F;
            m_level = std::clamp(wanted, m_level - m_slope, m_level + m_slope);
            const bool goesOn = m_isPlaying || m_level > 0;
            sample = goesOn ? scaled(nextSample(), m_level) : StereoSample{};
        }
    }
    m_wake.notify_one();
}

bool MusicStream::hasSeekOrEnd(const std::stop_token& stop) const {
    const std::lock_guard lock(m_mutex);
    return m_seek.has_value() || stop.stop_requested();
}

std::vector<StereoSample> MusicStream::decode(const std::stop_token& stop) {
    std::vector<StereoSample> piece;
    while (piece.empty() && !stop.stop_requested()) {
        if (!m_reader) {
            m_reader.emplace(m_music, stop);
            m_position = 0;
        }
        const bool hasMore = m_reader->read(piece);
        m_position += static_cast<std::int64_t>(piece.size());
        if (hasMore)
            continue;
        m_reader.reset();
        if (!stop.stop_requested())
            m_length = m_position;
        if (m_position == 0)
            break;
    }
    return piece;
}

void MusicStream::find(std::int64_t sample, const std::stop_token& stop) {
    m_filmSample = sample;
    m_piece.clear();
    std::int64_t target = sample;
    if (m_length && *m_length > 0)
        target %= *m_length;
    if (!m_reader || m_position > target) {
        m_reader.reset();
        m_position = 0;
    }
    while (!hasSeekOrEnd(stop)) {
        const std::vector<StereoSample> piece = decode(stop);
        if (piece.empty())
            return;
        if (m_length && target >= *m_length) {
            target %= *m_length;
            // The piece is the end of a pass, unless the next one has begun.
            if (!m_reader) {
                m_position = 0;
                continue;
            }
        }
        if (m_position > target) {
            m_piece.assign(piece.end() - static_cast<std::ptrdiff_t>(m_position - target), piece.end());
            return;
        }
    }
}

void MusicStream::run(const std::stop_token& stop) try {
    while (true) {
        std::optional<std::int64_t> seek;
        {
            std::unique_lock lock(m_mutex);
            const auto hasWork = [this] { return m_seek || m_ready.size() < mostReady; };
            if (!m_wake.wait(lock, stop, hasWork))
                return;
            seek = std::exchange(m_seek, std::nullopt);
        }
        if (seek)
            find(*seek, stop);
        if (m_piece.empty())
            m_piece = decode(stop);
        if (m_piece.empty())
            return;
        for (StereoSample& sample : m_piece) {
            const double time = static_cast<double>(m_filmSample++) / audioSampleRate;
            sample = scaled(
                sample, Export::AudioGain::gain(time, m_plan.totalDuration, m_plan.fadeIn, m_plan.fadeOut));
        }
        const std::lock_guard lock(m_mutex);
        // What was decoded for the place before is of no use.
        if (!m_seek)
            m_ready.insert(m_ready.end(), m_piece.begin(), m_piece.end());
        m_piece.clear();
    }
} catch (const Export::ExportError&) {
    // Music that cannot be read any more is silence.
}

} // namespace Player
