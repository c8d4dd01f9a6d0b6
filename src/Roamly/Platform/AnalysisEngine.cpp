// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

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
#include <Roamly/Platform/AnalysisEngine.h>
#include <Roamly/Platform/UserFolders.h>

#include <stdexcept>
#include <utility>

namespace Platform {

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

namespace {

/// "person" or "people", as sure as the surest face; nothing where there is none.
std::optional<Captioning::ClassObservation> peopleIn(const Foundation::Image& image,
                                                     const Analysis::FaceFinder& finder) {
    try {
        const std::vector<Analysis::Face> faces = finder.faces(image);
        if (faces.empty())
            return std::nullopt;
        return Captioning::ClassObservation{faces.size() == 1 ? "person" : "people",
                                            static_cast<float>(faces.front().confidence)};
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

} // namespace

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
            // The network was taught animals and things; who is in the photo, the faces tell.
            if (const auto people = peopleIn(image, m_networks->faces))
                observations.push_back(*people);
            return observations;
        };
}

Geocoding makeGeocoding(const Document::AppSettings& settings) {
    if (settings.geocoderURL) {
        // What public servers of this kind stand.
        constexpr int requestsPerMinute = 45;
        return {std::make_unique<Analysis::NominatimReverseGeocoder>(*settings.geocoderURL,
                                                                     "Roamly (app.roamly.Roamly)"),
                requestsPerMinute};
    }
    return {std::make_unique<Analysis::OfflineReverseGeocoder>(Analysis::dataFile("gazetteer.bin"),
                                                               Analysis::dataFile("land-borders.bin"))};
}

std::filesystem::path geocodeCacheFile() {
    return UserFolders::caches() / "geocode.json";
}

} // namespace Platform
