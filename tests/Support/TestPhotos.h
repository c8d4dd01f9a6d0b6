// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/PhotoItem.h>

#include <filesystem>
#include <string>
#include <string_view>

/// Photo files and records for tests.
namespace TestPhotos {

struct Look {
    int width = 64;
    int height = 48;
    /// 0xRRGGBB, the same everywhere.
    unsigned colour = 0x808080;
    /// The EXIF date in UTC, "2024:05:01 10:00:00"; without one the file has none.
    std::string_view date = {};
};

/// Writes a JPEG, making the folders above it, and returns its path.
std::filesystem::path write(const std::filesystem::path& file, const Look& look);
std::filesystem::path write(const std::filesystem::path& file);

/// The identifier 00000000-0000-0000-0000-0000000000NN.
[[nodiscard]] Foundation::Uuid uuid(int number);

/// A selected photo in a file, which need not exist.
[[nodiscard]] ProjectModel::PhotoItem item(int number, const std::filesystem::path& file = "/nowhere.jpg");

} // namespace TestPhotos
