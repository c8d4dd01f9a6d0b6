#include <Analysis/AnalysisPipeline.h>
#include <Analysis/BestShotSelector.h>
#include <Analysis/DuplicateClusterer.h>
#include <Analysis/GeocodeCache.h>
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

constexpr double duplicateThreshold = 0.5;
constexpr double duplicateWindowSeconds = 600;

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

/// Decoded photos for a second look, as many as fit. The first ones stay: duplicates lie near each other, so
/// it matters little which.
class ImageStore {
public:
    explicit ImageStore(std::size_t bytes)
        : m_freeBytes(bytes) {}

    void put(const Uuid& photo, Image image) {
        if (image.pixels.size() > m_freeBytes)
            return;
        m_freeBytes -= image.pixels.size();
        m_images.insert_or_assign(photo, std::move(image));
    }
    /// Any thread, as long as nobody puts.
    [[nodiscard]] const Image* find(const Uuid& photo) const {
        const auto found = m_images.find(photo);
        return found == m_images.end() ? nullptr : &found->second;
    }

private:
    std::size_t m_freeBytes;
    std::unordered_map<Uuid, Image> m_images;
};

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
    for (const Cell& cell : cells) {
        if (stop.stop_requested())
            return;
        if (const auto location = m_resolver.resolve(cell.coordinate, stop)) {
            for (const Uuid& photo : cell.photos)
                project.applyProposedLocation(*location, photo);
        }
        completed += cell.photos.size();
        report(progress, PipelineProgress::Stage::geocoding, completed, total);
    }
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
    ImageStore store(m_resources.imageStoreBytes);
    std::vector<ClusterItem> items;
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
            if (look.image)
                store.put(photos[i].id, std::move(*look.image));
            report(progress, PipelineProgress::Stage::clustering, i + 1, photos.size());
        });
    // What is known of half the photos groups them wrongly.
    if (!mayContinue())
        return;

    const auto clusters =
        DuplicateClusterer::cluster(items, duplicateThreshold, duplicateWindowSeconds, m_newID);
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
            std::optional<Image> again;
            const Image* image = store.find(pending[j]->id);
            if (!image) {
                again = m_imageProvider.image(pending[j]->source);
                if (!again)
                    return std::nullopt;
                image = &*again;
            }
            const ImageQuality quality = m_qualityScorer.quality(*image);
            return BestShotSelector::score({quality.aesthetics,
                                            BestShotSelector::sharpness(SharpnessScorer::variance(*image)),
                                            quality.hasOpenEyedFace});
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
    std::vector<Uuid> ids;
    for (const PhotoItem& photo : photos)
        ids.push_back(photo.id);
    for (const Uuid& id : ids) {
        const auto cluster = clusterOf(clusters, id);
        if (!cluster)
            continue;
        const auto score = scores.find(id);
        project.applyProposedSelection(selection.keep.contains(id), cluster,
                                       score == scores.end() ? std::nullopt : std::optional(score->second),
                                       id);
    }
}

} // namespace Analysis
