// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/AnalysisPipeline.h>
#include <Analysis/GeocodeCache.h>
#include <Analysis/LocationInference.h>
#include <Analysis/ShotComparison.h>

#include <algorithm>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Analysis {

namespace {

using Foundation::Uuid;
using ProjectModel::PhotoItem;

/// Photos of one grid cell.
struct Cell {
    /// Of the first of them.
    ProjectModel::Coordinate coordinate;
    std::vector<Uuid> photos;
};

/// In the order of their first photos. Positions that are none have no cell to share, and get one each.
std::vector<Cell> cellsOf(const std::vector<PhotoItem>& photos) {
    std::vector<Cell> cells;
    std::unordered_map<std::string, std::size_t> known;
    for (const PhotoItem& photo : photos) {
        if (!photo.coordinate)
            continue;
        std::size_t cell = cells.size();
        if (isOnEarth(*photo.coordinate))
            cell = known.try_emplace(GeocodeCache::gridKey(*photo.coordinate), cell).first->second;
        if (cell == cells.size())
            cells.push_back({*photo.coordinate, {}});
        cells[cell].photos.push_back(photo.id);
    }
    return cells;
}

} // namespace

AnalysisPipeline::AnalysisPipeline(LocationResolver& resolver, ImageProviding& imageProvider,
                                   FeaturePrinting& featurePrinter, ImageQualityScoring& qualityScorer,
                                   Foundation::UuidSource newID)
    : AnalysisPipeline(resolver, imageProvider, featurePrinter, qualityScorer, std::move(newID),
                       Resources{}) {}

AnalysisPipeline::AnalysisPipeline(LocationResolver& resolver, ImageProviding& imageProvider,
                                   FeaturePrinting& featurePrinter, ImageQualityScoring& qualityScorer,
                                   Foundation::UuidSource newID, Resources resources)
    : m_resolver(resolver)
    , m_imageProvider(imageProvider)
    , m_featurePrinter(featurePrinter)
    , m_qualityScorer(qualityScorer)
    , m_newID(std::move(newID))
    , m_resources(resources) {
    if (m_resources.workers == 0)
        m_resources.workers = std::max(1U, std::thread::hardware_concurrency());
}

ProjectModel::Project AnalysisPipeline::analyze(ProjectModel::Project project,
                                                const PipelineProgressCallback& progress,
                                                const std::stop_token& stop) {
    locate(project, progress, stop);
    if (stop.stop_requested())
        return project;
    LocationInference::infer(project);
    compareShots(project, progress, stop);
    if (!stop.stop_requested())
        report(progress, PipelineProgress::Stage::done, 1, 1);
    return project;
}

void AnalysisPipeline::locate(ProjectModel::Project& project, const PipelineProgressCallback& progress,
                              const std::stop_token& stop) {
    const std::vector<Cell> cells = cellsOf(project.photos);
    std::size_t total = 0;
    for (const Cell& cell : cells)
        total += cell.photos.size();

    std::size_t completed = 0;
    std::vector<ProjectModel::ProposedLocation> proposals;
    for (const Cell& cell : cells) {
        if (stop.stop_requested())
            break;
        if (const auto location = m_resolver.resolve(cell.coordinate, stop)) {
            for (const Uuid& photo : cell.photos)
                proposals.push_back({photo, *location});
        }
        completed += cell.photos.size();
        report(progress, PipelineProgress::Stage::geocoding, completed, total);
    }
    project.applyProposedLocations(proposals);
}

void AnalysisPipeline::compareShots(ProjectModel::Project& project, const PipelineProgressCallback& progress,
                                    const std::stop_token& stop) {
    ShotComparison shots(project, {m_imageProvider, m_featurePrinter, m_qualityScorer},
                         {m_resources.workers, m_resources.imageStoreBytes}, progress, stop);
    if (!shots.look())
        return;
    shots.group(m_newID);
    if (shots.score())
        shots.propose();
}

} // namespace Analysis
