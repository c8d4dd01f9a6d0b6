// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace Export::AudioGain {

/// The music's envelope: 0…1 at `time`, for a slideshow of `total` seconds. All arguments in seconds.
[[nodiscard]] float gain(double time, double total, double fadeIn, double fadeOut);

} // namespace Export::AudioGain
