// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <stop_token>

namespace Analysis {

/// A monotonic clock and the way to wait on it; a parameter of whatever waits, so that tests need not.
class Clock {
public:
    using Duration = std::chrono::duration<double>;

    virtual ~Clock() = default;

    /// The time since some fixed moment.
    [[nodiscard]] virtual Duration now() = 0;

    /// Returns after `duration`, or as soon as `stop` is triggered. At once when it is not positive.
    virtual void sleep(Duration duration, const std::stop_token& stop) = 0;
};

/// The real one. Keeps counting while the machine sleeps. Thread-safe.
class ContinuousClock final : public Clock {
public:
    [[nodiscard]] Duration now() override;
    void sleep(Duration duration, const std::stop_token& stop) override;
};

} // namespace Analysis
