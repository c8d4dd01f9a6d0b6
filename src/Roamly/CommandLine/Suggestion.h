// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <span>
#include <string>
#include <string_view>

namespace CommandLine {

/// " Did you mean X?" for the candidate closest to what was typed; empty when none is close.
[[nodiscard]] std::string suggestion(std::string_view typed, std::span<const std::string_view> candidates);

} // namespace CommandLine
