// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>

#include <QStringList>
#include <map>

namespace Sheets {

/// The places already named in a project, to complete what is typed.
struct KnownPlaces {
    /// Each once, the most frequent first.
    QStringList cities;
    QStringList countries;
    /// The country that most photos of a city have.
    std::map<QString, QString> countryOfCity;
};

[[nodiscard]] KnownPlaces knownPlaces(const ProjectModel::Project& project);

} // namespace Sheets
