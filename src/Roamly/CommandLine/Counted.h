// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace CommandLine {

/// "1 photo", "3 photos".
[[nodiscard]] inline std::string counted(std::size_t count, std::string_view noun) {
    return std::to_string(count) + " " + std::string{noun} + (count == 1 ? "" : "s");
}

} // namespace CommandLine
