// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Stage/FrameConversion.h>
#include <Roamly/Window/Stage/FrameFeed.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace Stage {

namespace {

constexpr double frameDuration = 1.0 / 30;
constexpr std::size_t mostAhead = 4;
/// Parts of the screen's size to draw at.
constexpr std::array steps{1.0, 0.75, 0.5, 0.375};
/// Pictures in a row that came late before the size goes down, and that came with all the others waiting
/// before it goes up.
constexpr int lateToStepDown = 3;
constexpr int earlyToStepUp = 150;

} // namespace

FrameFeed::FrameFeed(MakeSource makeSource, Timeline::Playhead playhead, std::function<void()> ready)
    : m_makeSource(std::move(makeSource))
    , m_playhead(std::move(playhead))
    , m_ready(std::move(ready))
    , m_thread([this] { run(); }) {}

FrameFeed::~FrameFeed() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void FrameFeed::resize(QSize size, double time) {
    {
        const std::lock_guard lock(m_mutex);
        if (size == m_size)
            return;
        m_size = size;
        restart(time);
    }
    m_wake.notify_one();
}

void FrameFeed::jump(double time) {
    {
        const std::lock_guard lock(m_mutex);
        restart(time);
    }
    m_wake.notify_one();
}

void FrameFeed::follow(double time, bool isPlaying) {
    {
        const std::lock_guard lock(m_mutex);
        m_now = time;
        const bool stops = m_isPlaying && !isPlaying;
        m_isPlaying = isPlaying;
        if (stops && m_step > 0) {
            m_step = 0;
            restart(time);
        }
    }
    m_wake.notify_one();
}

void FrameFeed::restart(double time) {
    ++m_generation;
    m_pictures.clear();
    m_now = time;
    m_next = time;
    m_isFirst = true;
    m_late = 0;
}

std::optional<FrameFeed::Picture> FrameFeed::take() {
    std::optional<Picture> due;
    {
        const std::lock_guard lock(m_mutex);
        while (!m_pictures.empty() && m_pictures.front().time <= m_now) {
            due = std::move(m_pictures.front());
            m_pictures.pop_front();
        }
    }
    if (due)
        m_wake.notify_one();
    return due;
}

bool FrameFeed::hasWork() const {
    return !m_size.isEmpty() && (m_isFirst || m_pictures.size() < mostAhead);
}

Frames::FrameSize FrameFeed::drawingSize() const {
    // Whole pairs, as the film's own frames have.
    const auto part = [this](int length) {
        return std::max(2, 2 * static_cast<int>(std::lround(length * steps[m_step] / 2)));
    };
    return {part(m_size.width()), part(m_size.height())};
}

void FrameFeed::judge(bool isLate) {
    m_late = isLate ? m_late + 1 : 0;
    m_early = m_pictures.size() + 1 >= mostAhead ? m_early + 1 : 0;
    if (m_late >= lateToStepDown && m_step + 1 < steps.size()) {
        ++m_step;
        m_late = 0;
        m_early = 0;
    } else if (m_early >= earlyToStepUp && m_step > 0) {
        --m_step;
        m_early = 0;
    }
}

void FrameFeed::run() {
    const std::unique_ptr<Frames::FrameSource> source = m_makeSource();
    std::unique_lock lock(m_mutex);
    while (true) {
        m_wake.wait(lock, [this] { return m_isEnding || hasWork(); });
        if (m_isEnding)
            return;
        // What is late already nobody would see.
        if (!m_isFirst && m_isPlaying)
            m_next = std::max(m_next, m_now);
        const double time = m_next;
        const std::uint64_t generation = m_generation;
        const Frames::FrameSize size = drawingSize();
        lock.unlock();

        Picture picture{time, {}};
        if (const auto frame = source->frame(m_playhead.state(time), size))
            picture.image = toScreen(*frame);

        lock.lock();
        if (generation != m_generation)
            continue;
        // The first one is late by its nature.
        if (m_isPlaying && !m_isFirst)
            judge(m_now > time + frameDuration);
        m_isFirst = false;
        m_pictures.push_back(std::move(picture));
        m_next = time + frameDuration;
        lock.unlock();
        m_ready();
        lock.lock();
    }
}

} // namespace Stage
