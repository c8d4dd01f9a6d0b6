// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Timeline/ChapterWalk.h>
#include <Timeline/TimelineBuilder.h>

#include <utility>

namespace Timeline {

std::optional<std::string> ChapterWalk::enter(const ProjectModel::PhotoItem& photo) {
    if (!photo.isSelected)
        return std::nullopt;
    std::optional<std::string> place = TimelineBuilder::locationLabel(photo);
    if (!place || place == m_place)
        return std::nullopt;
    m_place = std::move(place);
    return m_place;
}

} // namespace Timeline
