// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/PipelineProgress.h>
#include <ProjectModel/Project.h>
#include <Roamly/Document/AppSettings.h>

#include <functional>
#include <stop_token>

namespace Platform {

/// An analysis with the networks, the gazetteer and the cache of this machine, for an AnalysisController. The
/// cache is saved also after a stop. Any thread. Throws std::exception with a sentence when it cannot begin.
[[nodiscard]] ProjectModel::Project
analyzeOnThisMachine(const ProjectModel::Project& project, const Document::AppSettings& settings,
                     const std::function<void(const Analysis::PipelineProgress&)>& progress,
                     const std::stop_token& stop);

} // namespace Platform
