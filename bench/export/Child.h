// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Bench {

/// What a program took, start-up and all.
struct Usage {
    bool hasSucceeded = false;
    double wallSeconds = 0;
    double cpuSeconds = 0;
    /// Most memory at a time.
    std::int64_t peakBytes = 0;
    /// What it wrote to standard output.
    std::string output;
};

/// Runs a program to its end; what it writes to standard error is dropped unless `isLoud`.
Usage runChild(const std::vector<std::string>& command, bool isLoud = false);

/// CPU seconds of this process and all its threads so far.
double cpuSecondsSoFar();

/// Most memory this process held since the last reset, in bytes.
std::int64_t peakMemory();
void resetPeakMemory();

} // namespace Bench
