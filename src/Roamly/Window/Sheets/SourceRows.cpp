// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/SourceRows.h>

#include <map>
#include <variant>

namespace Sheets {

std::vector<SourceRow> sourceRows(const ProjectModel::Project& project) {
    struct Count {
        int photos = 0;
        int missing = 0;
    };
    std::map<Foundation::Uuid, Count> counts;
    for (const ProjectModel::PhotoItem& photo : project.photos) {
        if (!photo.sourceID)
            continue;
        Count& count = counts[*photo.sourceID];
        ++count.photos;
        count.missing += photo.isMissing ? 1 : 0;
    }
    std::vector<SourceRow> rows;
    for (const ProjectModel::PhotoSource& source : project.sources) {
        const Count count = counts[source.id];
        const auto* const folder = std::get_if<ProjectModel::FolderSourceRef>(&source.ref);
        rows.push_back(
            {.id = source.id,
             .kind = folder ? SourceRow::Kind::Folder : SourceRow::Kind::Album,
             .name = folder ? folder->displayPath : std::get<ProjectModel::AlbumSourceRef>(source.ref).title,
             .photoCount = count.photos,
             .missingCount = count.missing});
    }
    return rows;
}

} // namespace Sheets
