// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <stop_token>
#include <thread>

namespace CommandLine {

/// Turns Ctrl-C and requests to terminate into a stop token. The first asks the work to end; one that comes
/// more than a second later ends the process at once, after `lastly`; files that are replaced as a whole stay
/// as they were. Made before any other thread: the signals are held back in all threads and taken by one of
/// its own.
class Interruption {
public:
    explicit Interruption(std::function<void()> lastly = {});
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    [[nodiscard]] std::stop_token token() const { return m_source.get_token(); }

private:
    std::stop_source m_source;
    std::jthread m_watcher;
};

} // namespace CommandLine
