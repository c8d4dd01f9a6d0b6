// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/Project.h>

#include <cstdint>
#include <optional>
#include <string>

/// Records of photos for tests of the grid.
namespace GridPhotos {

inline Foundation::Uuid id(std::uint32_t number) {
    Foundation::Uuid id;
    for (std::size_t byte = 0; byte < 4; ++byte)
        id.bytes[byte] = static_cast<std::uint8_t>(number >> (24 - 8 * byte));
    return id;
}

/// A photo of a file called "IMG_<number>.jpg".
inline ProjectModel::PhotoItem photo(std::uint32_t number, const std::optional<std::string>& city = {},
                                     bool isSelected = true) {
    ProjectModel::PhotoItem photo{};
    photo.id = id(number);
    photo.source = ProjectModel::FilePhotoRef{{}, "IMG_" + std::to_string(number) + ".jpg"};
    photo.isSelected = isSelected;
    if (city)
        photo.location =
            ProjectModel::ResolvedLocation{city, std::nullopt, ProjectModel::Provenance::geocoded};
    return photo;
}

/// Photos 0 to count - 1; the city changes every `perCity` photos.
inline ProjectModel::Project project(std::uint32_t count, std::uint32_t perCity = 10) {
    ProjectModel::Project project;
    for (std::uint32_t number = 0; number < count; ++number)
        project.photos.push_back(photo(number, "City " + std::to_string(number / perCity)));
    return project;
}

} // namespace GridPhotos
