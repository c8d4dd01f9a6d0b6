// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/FeaturePrinting.h>
#include <Analysis/ImageQualityScoring.h>
#include <Analysis/ReverseGeocoding.h>
#include <Captioning/SceneTagging.h>
#include <Roamly/Document/AppSettings.h>

#include <chrono>
#include <filesystem>
#include <memory>

namespace Platform {

/// What looks at photos: the networks that the program comes with, loaded once. Thread-safe.
class VisionEngine {
public:
    /// Takes some tenths of a second. Throws std::runtime_error with a sentence that names the file that is
    /// missing or damaged.
    VisionEngine();
    ~VisionEngine();
    VisionEngine(const VisionEngine&) = delete;
    VisionEngine& operator=(const VisionEngine&) = delete;

    [[nodiscard]] Analysis::FeaturePrinting& featurePrinter();
    [[nodiscard]] Analysis::ImageQualityScoring& qualityScorer();
    /// For scene tags. Borrows this engine.
    [[nodiscard]] Captioning::ImageClassifier classifier();

private:
    struct Networks;
    std::unique_ptr<Networks> m_networks;
};

/// Who names places, and how often it may be asked.
struct Geocoding {
    std::unique_ptr<Analysis::ReverseGeocoding> geocoder;
    /// Within any `window`; 0 means as often as one likes.
    int maxRequests = 0;
    std::chrono::seconds window{60};
};

/// The gazetteer on this machine, or the server that the user named. Throws std::runtime_error with a
/// sentence that names the file that is missing or damaged.
[[nodiscard]] Geocoding makeGeocoding(const Document::AppSettings& settings);

/// Where the places of an earlier analysis are kept.
[[nodiscard]] std::filesystem::path geocodeCacheFile();

} // namespace Platform
