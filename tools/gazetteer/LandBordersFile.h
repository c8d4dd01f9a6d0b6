// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Sources.h"

#include <string>

namespace GazetteerBuilder {

/// The file of land borders, made of OpenStreetMap's data alone.
[[nodiscard]] std::string landBordersFile(const Sources& sources);

} // namespace GazetteerBuilder
