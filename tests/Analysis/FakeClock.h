// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/Clock.h>

#include <vector>

namespace Analysis {

/// Time passes only when somebody sleeps, and then at once.
class FakeClock final : public Clock {
public:
    [[nodiscard]] Duration now() override { return m_now; }
    void sleep(Duration duration, const std::stop_token& stop) override {
        sleeps.push_back(duration.count());
        if (!stop.stop_requested() && duration > Duration::zero())
            m_now += duration;
    }
    void advance(double seconds) { m_now += Duration(seconds); }

    /// How long each sleep was to be, in seconds.
    std::vector<double> sleeps;

private:
    Duration m_now{1000};
};

} // namespace Analysis
