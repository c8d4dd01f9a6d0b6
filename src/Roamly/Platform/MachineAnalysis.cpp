// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/AnalysisPipeline.h>
#include <Analysis/Clock.h>
#include <Analysis/GeocodeCache.h>
#include <Analysis/LocationResolver.h>
#include <Roamly/Platform/AnalysisEngine.h>
#include <Roamly/Platform/AppImageProvider.h>
#include <Roamly/Platform/MachineAnalysis.h>

namespace Platform {

namespace {

/// Enough to tell scenes, faces and sharpness.
constexpr int analysedPhotoMaxPixel = 1024;

class PhotoImages final : public Analysis::ImageProviding {
public:
    [[nodiscard]] std::optional<Foundation::Image> image(const ProjectModel::PhotoRef& ref) override {
        return m_provider.image(ref);
    }

private:
    AppImageProvider m_provider{analysedPhotoMaxPixel};
};

} // namespace

ProjectModel::Project
analyzeOnThisMachine(const ProjectModel::Project& project, const Document::AppSettings& settings,
                     const std::function<void(const Analysis::PipelineProgress&)>& progress,
                     const std::stop_token& stop) {
    const Geocoding geocoding = makeGeocoding(settings);
    VisionEngine vision;
    Analysis::GeocodeCache cache{geocodeCacheFile()};
    Analysis::ContinuousClock clock;
    Analysis::LocationResolver resolver{cache, *geocoding.geocoder, geocoding.maxRequests, geocoding.window,
                                        clock};
    PhotoImages images;
    Analysis::AnalysisPipeline pipeline{resolver, images, vision.featurePrinter(), vision.qualityScorer()};
    ProjectModel::Project analysed = pipeline.analyze(project, progress, stop);
    cache.persist();
    return analysed;
}

} // namespace Platform
