// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace ProjectModel {

/// Degrees; north and east are positive. Not range-checked, but always finite.
struct Coordinate {
    double latitude = 0;
    double longitude = 0;

    friend bool operator==(const Coordinate&, const Coordinate&) = default;
};

} // namespace ProjectModel
