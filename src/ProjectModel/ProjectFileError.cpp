// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/ProjectFile.h>

namespace ProjectModel {

ProjectFileError::ProjectFileError(Kind kind, const std::string& message)
    : std::runtime_error(message)
    , m_kind(kind) {}

ProjectFileError::ProjectFileError(std::int64_t foundVersion, std::int64_t newestSupported)
    : std::runtime_error("The project was saved by a newer version of Roamly (its format is " +
                         std::to_string(foundVersion) + ", this version reads up to " +
                         std::to_string(newestSupported) + ").")
    , m_kind(Kind::newerSchema)
    , m_foundVersion(foundVersion)
    , m_newestSupported(newestSupported) {}

} // namespace ProjectModel
