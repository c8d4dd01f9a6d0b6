// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/AudioGain.h>
#include <Export/ExportError.h>
#include <Export/Soundtrack.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Export {

namespace {

constexpr std::size_t mostKept = std::size_t{30} * audioSampleRate;
constexpr std::size_t leastKept = 4096;

/// Files of floating-point samples may hold anything; the AAC encoder refuses what is not a number.
float withinFullScale(float sample) {
    return std::isfinite(sample) ? std::clamp(sample, -1.0F, 1.0F) : 0.0F;
}

} // namespace

Soundtrack::Soundtrack(std::filesystem::path music, Timeline::AudioPlan plan, std::stop_token stop)
    : m_music(std::move(music))
    , m_plan(std::move(plan))
    , m_stop(std::move(stop)) {}

bool Soundtrack::next(StereoBuffer& buffer) {
    const double start = position();
    if (!(start < m_plan.totalDuration))
        return false;
    if (m_samples.size() - m_taken < buffer.size()) {
        m_samples.erase(m_samples.begin(), m_samples.begin() + static_cast<std::ptrdiff_t>(m_taken));
        m_taken = 0;
        while (m_samples.size() < buffer.size())
            readMore();
    }
    for (std::size_t i = 0; i < buffer.size(); ++i) {
        const float gain = AudioGain::gain(start + static_cast<double>(i) / audioSampleRate,
                                           m_plan.totalDuration, m_plan.fadeIn, m_plan.fadeOut);
        const StereoSample& sample = m_samples[m_taken + i];
        buffer[i] = {withinFullScale(sample.left * gain), withinFullScale(sample.right * gain)};
    }
    m_taken += buffer.size();
    m_position += static_cast<std::int64_t>(buffer.size());
    return true;
}

void Soundtrack::readMore() {
    if (m_isKept) {
        m_samples.insert(m_samples.end(), m_kept.begin(), m_kept.end());
        return;
    }
    if (!m_reader)
        m_reader.emplace(m_music, m_stop);
    const std::size_t before = m_samples.size();
    const bool hasMore = m_reader->read(m_samples);
    // An interrupted file looks like one that ended.
    if (m_stop.stop_requested())
        throw ExportError(ExportError::Kind::cancelled);

    m_passLength += m_samples.size() - before;
    if (m_isKeeping)
        m_kept.insert(m_kept.end(), m_samples.begin() + static_cast<std::ptrdiff_t>(before), m_samples.end());
    if (m_kept.size() > mostKept) {
        m_isKeeping = false;
        m_kept = {};
    }
    if (hasMore)
        return;

    if (m_passLength == 0)
        throw ExportError(ExportError::Kind::appendFailed,
                          "music " + m_music.string() + ": there is no sound in it");
    m_isKept = m_isKeeping;
    // Written out several times if it is very short, so that it is not handed on sample by sample.
    while (m_isKept && m_kept.size() < leastKept) {
        const std::vector<StereoSample> once = m_kept;
        m_kept.insert(m_kept.end(), once.begin(), once.end());
    }
    m_passLength = 0;
    m_reader.reset();
}

} // namespace Export
