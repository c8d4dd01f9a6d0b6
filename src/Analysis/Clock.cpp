// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/Clock.h>

#include <algorithm>
#include <condition_variable>
#include <ctime>
#include <mutex>

namespace Analysis {

Clock::Duration ContinuousClock::now() {
    std::timespec time{};
    ::clock_gettime(CLOCK_BOOTTIME, &time);
    return Duration(static_cast<double>(time.tv_sec)) + std::chrono::nanoseconds(time.tv_nsec);
}

void ContinuousClock::sleep(Duration duration, const std::stop_token& stop) {
    const Duration until = now() + duration;
    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable_any never;
    while (!stop.stop_requested()) {
        const Duration left = until - now();
        if (!(left > Duration::zero()))
            return;
        // Waiting itself does not count a machine's sleep, so it is done in short pieces.
        never.wait_for(lock, stop, std::min<Duration>(left, std::chrono::seconds(1)), [] { return false; });
    }
}

} // namespace Analysis
