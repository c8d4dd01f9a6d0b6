#include <Analysis/AnalysisPipeline.h>
#include <Analysis/BestShotSelector.h>
#include <Analysis/DuplicateClusterer.h>
#include <Analysis/GeocodeCache.h>
#include <Analysis/LikelyDuplicates.h>
#include <Analysis/LocationInference.h>
#include <Analysis/OrderedWork.h>
#include <Analysis/SharpnessScorer.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Analysis {

namespace {

using Foundation::Image;
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

void report(const PipelineProgressCallback& progress, PipelineProgress::Stage stage, std::size_t completed,
            std::size_t total) {
    if (progress)
        progress({stage, static_cast<int>(completed), static_cast<int>(total)});
}

std::optional<Uuid> clusterOf(const std::unordered_map<Uuid, Uuid>& clusters, const Uuid& photo) {
    const auto found = clusters.find(photo);
    return found == clusters.end() ? std::nullopt : std::optional(found->second);
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
    clusterAndScore(project, progress, stop);
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

double AnalysisPipeline::score(const Image& image) {
    const ImageQuality quality = m_qualityScorer.quality(image);
    return BestShotSelector::score({quality.aesthetics,
                                    BestShotSelector::sharpness(SharpnessScorer::variance(image)),
                                    quality.hasOpenEyedFace});
}

void AnalysisPipeline::clusterAndScore(ProjectModel::Project& project,
                                       const PipelineProgressCallback& progress,
                                       const std::stop_token& stop) {
    const auto mayContinue = [&] { return !stop.stop_requested(); };
    const std::vector<PhotoItem>& photos = project.photos;

    struct Look {
        std::optional<Image> image;
        std::optional<std::vector<float>> features;
    };
    std::vector<ClusterItem> items;
    // A photo that resembles one just before it will most likely be scored, so it is while its pixels are at
    // hand; holding all of them until the groups are known would take gigabytes.
    std::unordered_map<Uuid, double> earlyScores;
    LikelyDuplicates likely(m_resources.imageStoreBytes);
    const auto scoreEarly = [&] {
        const std::vector<LikelyDuplicates::Photo> batch = likely.takeFound();
        inOrder(
            batch.size(), m_resources.workers, [&](std::size_t k) { return score(batch[k].image); },
            mayContinue,
            [&](std::size_t k, double value) { earlyScores.insert_or_assign(batch[k].id, value); });
    };
    inOrder(
        photos.size(), m_resources.workers,
        [&](std::size_t i) {
            Look look{m_imageProvider.image(photos[i].source), {}};
            try {
                if (look.image)
                    look.features = m_featurePrinter.features(*look.image);
            } catch (const std::exception&) {
                // A photo that cannot be printed is one that resembles no other.
            }
            return look;
        },
        mayContinue,
        [&](std::size_t i, Look look) {
            if (look.features)
                items.push_back({photos[i].id, photos[i].captureDate, std::move(*look.features)});
            if (look.image) {
                likely.add({photos[i].id, std::move(*look.image)}, look.features ? &items.back() : nullptr,
                           photos[i].clusterID.has_value());
                if (likely.foundCount() >= m_resources.workers * 2)
                    scoreEarly();
            }
            report(progress, PipelineProgress::Stage::clustering, i + 1, photos.size());
        });
    // What is known of half the photos groups them wrongly.
    if (!mayContinue())
        return;

    scoreEarly();
    const auto clusters = DuplicateClusterer::cluster(items, DuplicateClusterer::defaultThreshold,
                                                      DuplicateClusterer::defaultTimeWindow, m_newID);
    items.clear();

    std::vector<const PhotoItem*> pending;
    for (const PhotoItem& photo : photos) {
        if (clusterOf(clusters, photo.id) != photo.clusterID)
            pending.push_back(&photo);
    }
    std::unordered_map<Uuid, double> scores;
    inOrder(
        pending.size(), m_resources.workers,
        [&](std::size_t j) -> std::optional<double> {
            if (const auto known = earlyScores.find(pending[j]->id); known != earlyScores.end())
                return known->second;
            if (const Image* image = likely.find(pending[j]->id))
                return score(*image);
            const std::optional<Image> again = m_imageProvider.image(pending[j]->source);
            return again ? std::optional(score(*again)) : std::nullopt;
        },
        mayContinue,
        [&](std::size_t j, std::optional<double> score) {
            if (score)
                scores.emplace(pending[j]->id, *score);
            report(progress, PipelineProgress::Stage::scoring, j + 1, pending.size());
        });
    if (!mayContinue())
        return;

    const ClusterSelection selection = BestShotSelector::selection(clusters, scores);
    std::vector<ProjectModel::ProposedSelection> proposals;
    for (const PhotoItem& photo : photos) {
        const auto cluster = clusterOf(clusters, photo.id);
        if (!cluster)
            continue;
        const auto score = scores.find(photo.id);
        proposals.push_back({photo.id, selection.keep.contains(photo.id), cluster,
                             score == scores.end() ? std::nullopt : std::optional(score->second)});
    }
    project.applyProposedSelections(proposals);
}

} // namespace Analysis
