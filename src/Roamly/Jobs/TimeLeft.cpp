// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Jobs/TimeLeft.h>

#include <algorithm>
#include <cmath>

namespace Jobs {

namespace {

/// Seconds of the past that count: long enough that one slow photo does not matter, short enough to follow a
/// change.
constexpr double window = 20;
/// Before that much was seen an answer would be a guess.
constexpr double leastTime = 2;
constexpr double leastFraction = 0.01;

} // namespace

void TimeLeft::progress(double now, double fraction) {
    if (!m_samples.empty() && fraction < m_samples.back().fraction)
        m_samples.clear();
    if (!m_samples.empty() && fraction == m_samples.back().fraction)
        return;
    m_samples.push_back({now, fraction});
    while (m_samples.size() > 2 && now - m_samples[1].time > window)
        m_samples.pop_front();
}

std::optional<double> TimeLeft::seconds(double now) const {
    if (m_samples.size() < 2)
        return std::nullopt;
    const Sample& first = m_samples.front();
    const Sample& last = m_samples.back();
    const double took = last.time - first.time;
    const double done = last.fraction - first.fraction;
    if (took < leastTime || done < leastFraction)
        return std::nullopt;
    const double left = (1 - last.fraction) * took / done;
    return std::max(0.0, left - (now - last.time));
}

std::string timeLeftText(double seconds) {
    if (seconds < 10)
        return "a few seconds left";
    if (seconds < 50)
        return "less than a minute left";
    const auto minutes = std::llround(seconds / 60);
    if (minutes <= 1)
        return "about a minute left";
    if (minutes < 60)
        return "about " + std::to_string(minutes) + " minutes left";
    const auto quarters = std::llround(seconds / 900);
    const std::string hours = std::to_string(quarters / 4);
    const auto rest = quarters % 4 * 15;
    if (rest != 0)
        return "about " + hours + " h " + std::to_string(rest) + " min left";
    return quarters == 4 ? "about an hour left" : "about " + hours + " hours left";
}

} // namespace Jobs
