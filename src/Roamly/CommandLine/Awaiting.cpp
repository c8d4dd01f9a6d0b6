// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Awaiting.h>

namespace CommandLine {

std::exception_ptr await(Jobs::ActionQueue& queue, const std::stop_token& stop,
                         const std::function<bool()>& isDone, const std::function<void()>& cancel) {
    // Wakes this thread, which then cancels before it shows anything that was reported meanwhile.
    const std::stop_callback interrupted{stop, [&] { queue.post([] {}); }};
    std::exception_ptr failure;
    bool isAsked = false;
    const auto mustAsk = [&] { return !isAsked && (failure || stop.stop_requested()); };
    while (!isDone()) {
        if (mustAsk()) {
            isAsked = true;
            cancel();
            continue;
        }
        try {
            queue.runUntil([&] { return isDone() || mustAsk(); });
        } catch (...) {
            if (!failure)
                failure = std::current_exception();
        }
    }
    return failure;
}

} // namespace CommandLine
