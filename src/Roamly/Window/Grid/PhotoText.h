// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Instant.h>
#include <ProjectModel/PhotoItem.h>

#include <QString>
#include <QTimeZone>
#include <cstddef>
#include <optional>

/// What photos are called and how they are described, to eyes and to screen readers alike.
namespace Grid::PhotoText {

/// The file's name, or for a photo of a library "Photo".
[[nodiscard]] QString fileName(const ProjectModel::PhotoItem& photo);
/// The caption, else the file's name.
[[nodiscard]] QString name(const ProjectModel::PhotoItem& photo);
/// "Lisbon, Portugal"; empty without a place.
[[nodiscard]] QString place(const ProjectModel::PhotoItem& photo);
/// Place, date, whether it is in the film, its group, whether its file is missing: "Lisbon, Portugal, 14 May
/// 2024 16:22, in the film, part of a group of 5".
[[nodiscard]] QString description(const ProjectModel::PhotoItem& photo, std::size_t groupSize,
                                  const QTimeZone& zone);

/// Why the photo's file cannot be shown; empty when it can.
[[nodiscard]] QString whyNoFile(const ProjectModel::PhotoItem& photo);

/// "14 May 2024 16:22"
[[nodiscard]] QString moment(Foundation::Instant instant, const QTimeZone& zone);

struct Dates {
    Foundation::Instant first;
    Foundation::Instant last;
};
/// "14 May", "14 to 16 May", "30 April to 2 May", with years where the first and the last differ in theirs or
/// where asked for: "30 December 2023 to 2 January 2024".
[[nodiscard]] QString dates(const Dates& dates, bool withYear, const QTimeZone& zone);

/// "12 of 31 selected"
[[nodiscard]] QString selectedOf(std::size_t selected, std::size_t all);

} // namespace Grid::PhotoText
