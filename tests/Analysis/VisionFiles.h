#pragma once

#include <Analysis/FaceFinder.h>
#include <Analysis/ImageLabels.h>
#include <Analysis/VisionNetwork.h>

#include <filesystem>
#include <string>

namespace Analysis {

inline std::filesystem::path sharedFile(const std::string& name) {
    return std::filesystem::path(ROAMLY_SHARE) / name;
}

// Loading takes a while, so that all tests of the program share what was loaded.

inline const VisionNetwork& sharedNetwork() {
    static const VisionNetwork network(sharedFile(VisionNetwork::fileName));
    return network;
}

inline const FaceFinder& sharedFaceFinder() {
    static const FaceFinder finder(sharedFile(FaceFinder::detectorFileName),
                                   sharedFile(FaceFinder::landmarksFileName));
    return finder;
}

inline const ImageLabels& sharedLabels() {
    static const ImageLabels labels(sharedFile(ImageLabels::fileName));
    return labels;
}

} // namespace Analysis
