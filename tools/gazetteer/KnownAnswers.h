// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>

namespace GazetteerBuilder {

/// Asks the files for the places of a table of our own (latitude, longitude, city and country, - for
/// none) and throws std::runtime_error, which says what is wrong, when they answer one of them otherwise.
void checkAnswers(const std::filesystem::path& gazetteer, const std::filesystem::path& landBorders,
                  const std::filesystem::path& table);

} // namespace GazetteerBuilder
