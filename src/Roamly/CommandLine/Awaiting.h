// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Jobs/ActionQueue.h>

#include <exception>
#include <functional>
#include <stop_token>

namespace CommandLine {

/// A command's thread while a job works for it: carries out what the job reports until `isDone`, and calls
/// `cancel`, on this thread, when the user interrupts. When a report cannot be shown (nobody reads the output
/// any more) the job is cancelled too and runs out; what went wrong is returned, for the command to throw
/// once it has kept what there is.
[[nodiscard]] std::exception_ptr await(Jobs::ActionQueue& queue, const std::stop_token& stop,
                                       const std::function<bool()>& isDone,
                                       const std::function<void()>& cancel);

} // namespace CommandLine
