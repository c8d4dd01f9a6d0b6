// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Sources.h"

#include <string>

namespace GazetteerBuilder {

/// The gazetteer's file. Prints what came in.
[[nodiscard]] std::string gazetteerFile(const Sources& sources);

} // namespace GazetteerBuilder
