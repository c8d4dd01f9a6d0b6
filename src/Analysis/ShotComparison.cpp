// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/BestShotSelector.h>
#include <Analysis/OrderedWork.h>
#include <Analysis/SharpnessScorer.h>
#include <Analysis/ShotComparison.h>

#include <exception>
#include <utility>

namespace Analysis {

using Foundation::Image;
using Foundation::Uuid;
using ProjectModel::PhotoItem;

ShotComparison::ShotComparison(ProjectModel::Project& project, const Judges& judges, Resources resources,
                               const PipelineProgressCallback& progress, const std::stop_token& stop)
    : m_project(project)
    , m_judges(judges)
    , m_resources(resources)
    , m_progress(progress)
    , m_stop(stop)
    , m_likely(resources.imageStoreBytes) {}

bool ShotComparison::look() {
    const std::vector<PhotoItem>& photos = m_project.photos;
    inOrder(
        photos.size(), m_resources.workers, [&](std::size_t i) { return lookAt(photos[i]); },
        [this] { return mayContinue(); },
        [&](std::size_t i, Look look) {
            take(photos[i], std::move(look));
            report(m_progress, PipelineProgress::Stage::clustering, i + 1, photos.size());
        });
    if (!mayContinue())
        return false;
    scoreFound();
    return true;
}

ShotComparison::Look ShotComparison::lookAt(const PhotoItem& photo) const {
    Look look{m_judges.imageProvider.image(photo.source), {}};
    try {
        if (look.image)
            look.features = m_judges.featurePrinter.features(*look.image);
    } catch (const std::exception&) {
        // A photo that cannot be printed is one that resembles no other.
    }
    return look;
}

void ShotComparison::take(const PhotoItem& photo, Look look) {
    if (look.features)
        m_items.push_back({photo.id, photo.captureDate, std::move(*look.features)});
    if (!look.image)
        return;
    m_likely.add({photo.id, std::move(*look.image)}, look.features ? &m_items.back() : nullptr,
                 photo.clusterID.has_value());
    if (m_likely.foundCount() >= m_resources.workers * 2)
        scoreFound();
}

void ShotComparison::scoreFound() {
    const std::vector<LikelyDuplicates::Photo> found = m_likely.takeFound();
    inOrder(
        found.size(), m_resources.workers, [&](std::size_t i) { return judged(found[i].image); },
        [this] { return mayContinue(); },
        [&](std::size_t i, double score) { m_earlyScores.insert_or_assign(found[i].id, score); });
}

void ShotComparison::group(const Foundation::UuidSource& newID) {
    m_groups = DuplicateClusterer::cluster(m_items, DuplicateClusterer::defaultThreshold,
                                           DuplicateClusterer::defaultTimeWindow, newID);
    m_items.clear();
}

bool ShotComparison::score() {
    std::vector<const PhotoItem*> pending;
    for (const PhotoItem& photo : m_project.photos) {
        if (groupOf(photo.id) != photo.clusterID)
            pending.push_back(&photo);
    }
    inOrder(
        pending.size(), m_resources.workers, [&](std::size_t i) { return scoreOf(*pending[i]); },
        [this] { return mayContinue(); },
        [&](std::size_t i, std::optional<double> score) {
            if (score)
                m_scores.emplace(pending[i]->id, *score);
            report(m_progress, PipelineProgress::Stage::scoring, i + 1, pending.size());
        });
    return mayContinue();
}

std::optional<double> ShotComparison::scoreOf(const PhotoItem& photo) const {
    if (const auto known = m_earlyScores.find(photo.id); known != m_earlyScores.end())
        return known->second;
    if (const Image* image = m_likely.find(photo.id))
        return judged(*image);
    const std::optional<Image> again = m_judges.imageProvider.image(photo.source);
    return again ? std::optional(judged(*again)) : std::nullopt;
}

double ShotComparison::judged(const Image& image) const {
    const ImageQuality quality = m_judges.qualityScorer.quality(image);
    return BestShotSelector::score({quality.aesthetics,
                                    BestShotSelector::sharpness(SharpnessScorer::variance(image)),
                                    quality.hasOpenEyedFace});
}

void ShotComparison::propose() const {
    const ClusterSelection selection = BestShotSelector::selection(m_groups, m_scores);
    std::vector<ProjectModel::ProposedSelection> proposals;
    for (const PhotoItem& photo : m_project.photos) {
        const std::optional<Uuid> group = groupOf(photo.id);
        if (!group)
            continue;
        const auto score = m_scores.find(photo.id);
        proposals.push_back({photo.id, selection.keep.contains(photo.id), group,
                             score == m_scores.end() ? std::nullopt : std::optional(score->second)});
    }
    m_project.applyProposedSelections(proposals);
}

std::optional<Uuid> ShotComparison::groupOf(const Uuid& photo) const {
    const auto found = m_groups.find(photo);
    return found == m_groups.end() ? std::nullopt : std::optional(found->second);
}

} // namespace Analysis
