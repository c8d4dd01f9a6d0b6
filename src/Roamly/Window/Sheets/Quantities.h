// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <cstdint>

/// How amounts are said to people.
namespace Sheets {

/// "7:00", "1:02:05": a length to the second.
[[nodiscard]] QString lengthText(double seconds);

/// "less than a minute", "about 4 minutes", "about 1 hour 10 minutes": as exact as a guess may be.
[[nodiscard]] QString roughTimeText(double seconds);

/// "about 350 MB", to two figures, in units of 1000.
[[nodiscard]] QString roughSizeText(double bytes);

/// "1 photo", "1,200 photos".
[[nodiscard]] QString photoCountText(std::int64_t count);

/// "5 s", "4.25 s": the shortest text of a number of seconds.
[[nodiscard]] QString secondsText(double seconds);

} // namespace Sheets
