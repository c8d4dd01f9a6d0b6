// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/PhotoItem.h>

#include <QString>
#include <QTimeZone>
#include <cstddef>
#include <span>
#include <vector>

namespace Grid {

/// Photos of the grid under one header.
struct Section {
    /// The first of its rows; they follow each other.
    std::size_t first = 0;
    std::size_t count = 0;
    /// The chapter's place, or what stands for it.
    QString title;
    /// "14 to 16 May · 12 of 31 selected"
    QString details;

    friend bool operator==(const Section&, const Section&) = default;
};

/// Parts the shown photos as the film is parted into chapters. `photos` are all photos in their order, shown
/// or not, because chapters begin at photos that the grid may not show; `shown` says which ones it does, and
/// each section counts only those. Photos before the first chapter have a section of their own, unless none
/// of them is in the film: then they belong to the first chapter. A chapter without shown photos has no
/// section.
[[nodiscard]] std::vector<Section> sectionsOf(std::span<const ProjectModel::PhotoItem> photos,
                                              const std::vector<bool>& shown, const QTimeZone& zone);

} // namespace Grid
