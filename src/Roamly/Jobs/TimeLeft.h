// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <deque>
#include <optional>
#include <string>

namespace Jobs {

/// How long work will still take, judged by how fast it went of late. It asks no clock: the caller tells the
/// time, in seconds from anywhere, never backwards. A plain value.
class TimeLeft {
public:
    /// What is done at that time, 0…1. Less than before means that a new stage began.
    void progress(double now, double fraction);

    /// Seconds; nothing while it is too early to tell.
    [[nodiscard]] std::optional<double> seconds(double now) const;

private:
    struct Sample {
        double time;
        double fraction;
    };
    /// Of the present stage: its beginning, then what lies within the window.
    std::deque<Sample> m_samples;
};

/// "about 3 minutes left". Rounded so that it does not change at each look; seconds ≥ 0.
[[nodiscard]] std::string timeLeftText(double seconds);

} // namespace Jobs
