// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/PhotoItem.h>

#include <optional>
#include <string>

namespace Timeline {

/// Where the film's chapters begin, found by walking over a project's photos in their stored order.
class ChapterWalk {
public:
    /// The title of the chapter that begins with this photo, the walk's next; nothing when it goes on with
    /// the present one. Only photos of the film count, and one without a place neither begins nor ends a
    /// chapter.
    [[nodiscard]] std::optional<std::string> enter(const ProjectModel::PhotoItem& photo);

private:
    std::optional<std::string> m_place;
};

} // namespace Timeline
