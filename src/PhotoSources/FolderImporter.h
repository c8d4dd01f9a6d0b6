// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/PhotoItem.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <stop_token>
#include <vector>

namespace PhotoSources {

/// Images read so far, and the files found by the walk that are images or may still turn out to be: both
/// numbers end at the number of photos.
struct ImportProgress {
    std::size_t completed = 0;
    std::size_t total = 0;

    friend bool operator==(const ImportProgress&, const ImportProgress&) = default;
};

namespace FolderImporter {

struct Options {
    Foundation::UuidSource newID = Foundation::Uuid::random;
    /// Owner's thread, in order.
    std::function<void(const ImportProgress&)> progress;
    std::stop_token stop;
};

/// New records for every image file below the folder, in a stable order (by path). Hidden entries, symbolic
/// links and the contents of packages are passed over, and a file that cannot be handled is skipped; an
/// unreadable folder yields nothing. Throws only Foundation::Cancelled.
[[nodiscard]] std::vector<ProjectModel::PhotoItem> importPhotos(const std::filesystem::path& folder,
                                                                const Options& options = {});

} // namespace FolderImporter

} // namespace PhotoSources
