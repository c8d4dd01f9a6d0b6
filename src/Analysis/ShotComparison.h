// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/DuplicateClusterer.h>
#include <Analysis/FeaturePrinting.h>
#include <Analysis/ImageProviding.h>
#include <Analysis/ImageQualityScoring.h>
#include <Analysis/LikelyDuplicates.h>
#include <Analysis/PipelineProgress.h>
#include <Foundation/Image.h>
#include <Foundation/Uuid.h>
#include <ProjectModel/Project.h>

#include <cstddef>
#include <optional>
#include <stop_token>
#include <unordered_map>
#include <vector>

namespace Analysis {

/// Compares a project's photos with each other: groups near-duplicates and scores the members of new groups.
/// Made for one run; its steps are called in the order in which they stand here. Owner's thread; the
/// judges are asked in workers' threads.
class ShotComparison {
public:
    struct Judges {
        ImageProviding& imageProvider;
        FeaturePrinting& featurePrinter;
        ImageQualityScoring& qualityScorer;
    };
    struct Resources {
        /// At least 1.
        std::size_t workers = 1;
        /// For decoded photos that may have to be scored later; photos beyond it are decoded once more.
        std::size_t imageStoreBytes = 0;
    };

    /// Borrows the judges and the project for its lifetime; the project's photos stay as they are until
    /// `propose`.
    ShotComparison(ProjectModel::Project& project, const Judges& judges, Resources resources,
                   const PipelineProgressCallback& progress, const std::stop_token& stop);

    /// Decodes and prints every photo. False: stopped, and what is known of half the photos would group them
    /// wrongly.
    [[nodiscard]] bool look();
    void group(const Foundation::UuidSource& newID);
    /// Scores the photos whose group is another than before. False: stopped.
    [[nodiscard]] bool score();
    /// Proposes groups, scores and the shot of each group to keep.
    void propose() const;

private:
    struct Look {
        std::optional<Foundation::Image> image;
        std::optional<std::vector<float>> features;
    };

    [[nodiscard]] Look lookAt(const ProjectModel::PhotoItem& photo) const;
    void take(const ProjectModel::PhotoItem& photo, Look look);
    void scoreFound();
    [[nodiscard]] std::optional<double> scoreOf(const ProjectModel::PhotoItem& photo) const;
    [[nodiscard]] double judged(const Foundation::Image& image) const;
    [[nodiscard]] std::optional<Foundation::Uuid> groupOf(const Foundation::Uuid& photo) const;
    [[nodiscard]] bool mayContinue() const { return !m_stop.stop_requested(); }

    ProjectModel::Project& m_project;
    Judges m_judges;
    Resources m_resources;
    const PipelineProgressCallback& m_progress;
    const std::stop_token& m_stop;

    LikelyDuplicates m_likely;
    /// Of photos that resemble one just before them. These will most likely be scored, so they are while
    /// their pixels are at hand; holding all pixels until the groups are known would take gigabytes.
    std::unordered_map<Foundation::Uuid, double> m_earlyScores;
    /// The prints, until the groups are known.
    std::vector<ClusterItem> m_items;
    std::unordered_map<Foundation::Uuid, Foundation::Uuid> m_groups;
    std::unordered_map<Foundation::Uuid, double> m_scores;
};

} // namespace Analysis
