// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>

/// Music for tests.
namespace TestTone {

/// Writes a second of a buzzing tone as an uncompressed sound file and returns its path.
std::filesystem::path write(const std::filesystem::path& file);

} // namespace TestTone
