// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Tables.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// Which places are towns that people would name, how large they are, and what belongs to them.
namespace GazetteerBuilder {

/// Whether the feature code stands for a town at all, rather than for a part of one or for one that is no
/// more.
[[nodiscard]] bool isTown(const Place& place);
/// Whether it stands for a part of a town.
[[nodiscard]] bool isSection(const Place& place);

/// More than the table knows for seats of government, and at least a little for all.
[[nodiscard]] std::uint32_t assumedPopulation(const Place& place);

/// The radius of a disc that holds the population at a town's usual density.
[[nodiscard]] double radiusKm(std::uint32_t population);
/// How far outside the disc a town is as near as its own edge is to the middle.
[[nodiscard]] double fadeKm(std::uint32_t population);

/// Without the places that are parts of a far larger town: those listed in `corrections`, and those well
/// inside a large town that belong to the same administrative unit as the town does.
[[nodiscard]] std::vector<Place> withoutSections(std::vector<Place> places,
                                                 const std::filesystem::path& corrections);

/// The villages of a table of our own.
[[nodiscard]] std::vector<Place> moreTowns(const std::filesystem::path& table);

/// What postal codes add to the towns: where codes outside of a town are addressed to it, places of its name
/// that widen it; and villages that fill gaps between the towns.
[[nodiscard]] std::vector<Place> postalPlaces(const std::vector<Place>& codes,
                                              const std::vector<Place>& towns);

/// What the sections of towns tell of the towns' extent: a place for each, with the section's position and
/// population and the name of the town that it is a part of. Sections of towns that are no place themselves
/// are towns of their own. `towns` have their English names already.
[[nodiscard]] std::vector<Place> quarters(const std::vector<Place>& sections,
                                          const std::vector<Place>& towns);

} // namespace GazetteerBuilder
