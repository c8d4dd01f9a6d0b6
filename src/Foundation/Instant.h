// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace Foundation {

/// An absolute point in time in whole seconds, without a time zone. Sources with finer clocks floor to it.
using Instant = std::chrono::sys_seconds;

/// "2023-07-14T16:22:05Z". Defined for the years 0001 to 9999, which is what `parseIso8601` yields.
[[nodiscard]] std::string iso8601(Instant instant);

/// Reads exactly the form that `iso8601` writes (UTC, whole seconds, a capital T and Z); nothing for any
/// other text and for dates that do not exist. A leap second (":60") is not accepted.
[[nodiscard]] std::optional<Instant> parseIso8601(std::string_view text);

/// The instant of a calendar date and wall-clock time in UTC; nothing when a field is out of range.
[[nodiscard]] std::optional<Instant> makeInstant(int year, unsigned month, unsigned day, unsigned hour,
                                                 unsigned minute, unsigned second);

} // namespace Foundation
