#pragma once

#include <ProjectModel/ProjectSettings.h>
#include <Roamly/AppSettings.h>
#include <Timeline/EffectiveSettings.h>

namespace Roamly {

/// What a slideshow is made with: the project's own settings, where it has none the user's.
[[nodiscard]] Timeline::EffectiveSettings effectiveSettings(const ProjectModel::ProjectSettings& project,
                                                            const AppSettings& user);

} // namespace Roamly
