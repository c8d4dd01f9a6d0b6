// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace DemoTrip {

/// Half a minute of plucked chords, bass and a tune as a WAV file: 16-bit stereo at 44.1 kHz. The end flows
/// into the beginning, so that it can be repeated.
[[nodiscard]] QByteArray music();

} // namespace DemoTrip
