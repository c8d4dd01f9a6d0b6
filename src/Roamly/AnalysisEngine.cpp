#include <Analysis/Aesthetics.h>
#include <Analysis/DataFile.h>
#include <Analysis/FaceFinder.h>
#include <Analysis/ImageLabels.h>
#include <Analysis/NominatimReverseGeocoder.h>
#include <Analysis/OfflineReverseGeocoder.h>
#include <Analysis/VisionClassifier.h>
#include <Analysis/VisionFeaturePrinter.h>
#include <Analysis/VisionNetwork.h>
#include <Analysis/VisionQualityScorer.h>
#include <Roamly/AnalysisEngine.h>
#include <Roamly/UserFolders.h>

#include <utility>

namespace Roamly {

struct VisionEngine::Networks {
    Analysis::VisionNetwork network{Analysis::dataFile(Analysis::VisionNetwork::fileName)};
    Analysis::ImageLabels labels{Analysis::dataFile(Analysis::ImageLabels::fileName)};
    Analysis::FaceFinder faces{Analysis::dataFile(Analysis::FaceFinder::detectorFileName),
                               Analysis::dataFile(Analysis::FaceFinder::landmarksFileName)};
    Analysis::Aesthetics aesthetics{Analysis::dataFile(Analysis::Aesthetics::fileName)};
    Analysis::VisionFeaturePrinter printer{network};
    Analysis::VisionQualityScorer scorer{aesthetics, faces};
    Analysis::VisionClassifier classifier{network, labels};
};

VisionEngine::VisionEngine()
    : m_networks(std::make_unique<Networks>()) {}

VisionEngine::~VisionEngine() = default;

Analysis::FeaturePrinting& VisionEngine::featurePrinter() {
    return m_networks->printer;
}

Analysis::ImageQualityScoring& VisionEngine::qualityScorer() {
    return m_networks->scorer;
}

Captioning::ImageClassifier VisionEngine::classifier() {
    return
        [this](const Foundation::Image& image) -> std::optional<std::vector<Captioning::ClassObservation>> {
            std::optional<std::vector<Analysis::ImageLabel>> labels = m_networks->classifier(image);
            if (!labels)
                return std::nullopt;
            std::vector<Captioning::ClassObservation> observations;
            observations.reserve(labels->size());
            for (Analysis::ImageLabel& label : *labels)
                observations.push_back({std::move(label.identifier), label.confidence});
            return observations;
        };
}

Geocoding makeGeocoding(const AppSettings& settings) {
    if (settings.geocoderURL) {
        // What public servers of this kind stand.
        constexpr int requestsPerMinute = 45;
        return {std::make_unique<Analysis::NominatimReverseGeocoder>(*settings.geocoderURL,
                                                                     "Roamly (app.roamly.Roamly)"),
                requestsPerMinute};
    }
    return {std::make_unique<Analysis::OfflineReverseGeocoder>(Analysis::dataFile("gazetteer.bin"))};
}

std::filesystem::path geocodeCacheFile() {
    return UserFolders::caches() / "geocode.json";
}

} // namespace Roamly
