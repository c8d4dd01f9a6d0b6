// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/ProjectSettings.h>
#include <Roamly/Document/AppSettings.h>
#include <Timeline/EffectiveSettings.h>

namespace Document {

/// What a slideshow is made with: the project's own settings, where it has none the user's.
[[nodiscard]] Timeline::EffectiveSettings effectiveSettings(const ProjectModel::ProjectSettings& project,
                                                            const AppSettings& user);

} // namespace Document
