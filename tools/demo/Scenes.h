// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>

namespace DemoTrip::Scenes {

// The pictures of the trip, as a camera of 1600 by 1200 pixels would have seen them, held upright or not.

[[nodiscard]] QImage rooftops();
[[nodiscard]] QImage tramStreet();
[[nodiscard]] QImage cafe();
[[nodiscard]] QImage bridge();
/// `moment` 0…1: the boat sails on and the hand moves a little.
[[nodiscard]] QImage sunset(double moment);
[[nodiscard]] QImage palace();
[[nodiscard]] QImage forest();
[[nodiscard]] QImage lighthouse();
[[nodiscard]] QImage riverside();
[[nodiscard]] QImage nightSkyline();
[[nodiscard]] QImage beach();
[[nodiscard]] QImage vineyards();

} // namespace DemoTrip::Scenes
