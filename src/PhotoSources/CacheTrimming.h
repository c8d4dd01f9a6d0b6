// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

namespace PhotoSources::CacheTrimming {

/// Whether the file is gone now.
using Removal = std::function<bool(const std::filesystem::path& file)>;

/// Removes files directly in the folder, those modified longest ago first, until together they hold at most
/// `mostBytes`. A file that cannot be removed keeps counting, so that the next one goes in its place. Nothing
/// happens when the folder cannot be listed.
void trim(const std::filesystem::path& folder, std::int64_t mostBytes, const Removal& remove);

/// From the disk.
[[nodiscard]] bool removeFile(const std::filesystem::path& file);

} // namespace PhotoSources::CacheTrimming
