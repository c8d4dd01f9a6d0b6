// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/FeaturePrinting.h>
#include <Analysis/ImageProviding.h>
#include <Analysis/ImageQualityScoring.h>
#include <Analysis/LocationResolver.h>
#include <Analysis/PipelineProgress.h>
#include <Foundation/Uuid.h>
#include <ProjectModel/Project.h>

#include <cstddef>
#include <stop_token>

namespace Analysis {

/// Names places, groups near-duplicates and proposes the best shot of each group, all as proposals: what the
/// user chose stays. Made for one run. Owner's thread.
class AnalysisPipeline {
public:
    /// How a run uses the machine; nothing here changes a result or the order of reports.
    struct Resources {
        /// Threads that decode and look at photos; 0 means one for each core.
        std::size_t workers = 0;
        /// For decoded photos that may have to be scored later; photos beyond it are decoded once more.
        std::size_t imageStoreBytes = std::size_t{128} << 20;
    };

    /// Borrows all for its lifetime.
    AnalysisPipeline(LocationResolver& resolver, ImageProviding& imageProvider,
                     FeaturePrinting& featurePrinter, ImageQualityScoring& qualityScorer,
                     Foundation::UuidSource newID = Foundation::Uuid::random);
    AnalysisPipeline(LocationResolver& resolver, ImageProviding& imageProvider,
                     FeaturePrinting& featurePrinter, ImageQualityScoring& qualityScorer,
                     Foundation::UuidSource newID, Resources resources);

    /// The analysed project. Never fails: what cannot be located, decoded or judged stays without. `stop` is
    /// looked at before each photo and between the stages; a stopped run yields the project as far as it got,
    /// and reports no `done`.
    [[nodiscard]] ProjectModel::Project analyze(ProjectModel::Project project,
                                                const PipelineProgressCallback& progress = {},
                                                const std::stop_token& stop = {});

private:
    void locate(ProjectModel::Project& project, const PipelineProgressCallback& progress,
                const std::stop_token& stop);
    void compareShots(ProjectModel::Project& project, const PipelineProgressCallback& progress,
                      const std::stop_token& stop);

    LocationResolver& m_resolver;
    ImageProviding& m_imageProvider;
    FeaturePrinting& m_featurePrinter;
    ImageQualityScoring& m_qualityScorer;
    Foundation::UuidSource m_newID;
    Resources m_resources;
};

} // namespace Analysis
