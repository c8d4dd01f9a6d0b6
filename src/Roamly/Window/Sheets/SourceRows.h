// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/Project.h>

#include <string>
#include <vector>

namespace Sheets {

/// One source of the project as the sources manager lists it.
struct SourceRow {
    enum class Kind { Folder, Album };

    Foundation::Uuid id;
    Kind kind = Kind::Folder;
    /// A folder's path, an album's title; UTF-8.
    std::string name;
    int photoCount = 0;
    int missingCount = 0;

    friend bool operator==(const SourceRow&, const SourceRow&) = default;
};

/// In the project's order, with how many of its photos came from each.
[[nodiscard]] std::vector<SourceRow> sourceRows(const ProjectModel::Project& project);

} // namespace Sheets
