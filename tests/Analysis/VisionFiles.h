// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/Aesthetics.h>
#include <Analysis/FaceFinder.h>
#include <Analysis/ImageLabels.h>
#include <Analysis/VisionNetwork.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>

namespace Analysis {

inline std::filesystem::path sharedFile(const std::string& name) {
    return std::filesystem::path(ROAMLY_SHARE) / name;
}

/// A file whose header fits what it holds.
inline std::string wrapped(const std::string& payload) {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < payload.size(); i += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, payload.data() + i, std::min<std::size_t>(8, payload.size() - i));
        sum += word * (i / 4 + 1);
    }
    const std::uint64_t size = payload.size();
    std::string header = "RoamlyN1";
    header.append(reinterpret_cast<const char*>(&size), sizeof(size));
    header.append(reinterpret_cast<const char*>(&sum), sizeof(sum));
    return header + payload;
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

inline const Aesthetics& sharedAesthetics() {
    static const Aesthetics aesthetics(sharedFile(Aesthetics::fileName));
    return aesthetics;
}

inline const ImageLabels& sharedLabels() {
    static const ImageLabels labels(sharedFile(ImageLabels::fileName));
    return labels;
}

} // namespace Analysis
