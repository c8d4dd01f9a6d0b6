// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace CommandLine {

/// One line of a progress bar: "Rendering video  ━━━━━━────  43 %  0:32 left", never wider than `columns`.
/// `elapsed` since the beginning tells how long the rest will take.
[[nodiscard]] std::string progressLine(std::string_view label, double fraction,
                                       std::chrono::duration<double> elapsed, int columns);

} // namespace CommandLine
