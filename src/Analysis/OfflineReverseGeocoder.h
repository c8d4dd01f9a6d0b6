// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/ReverseGeocoding.h>

#include <filesystem>
#include <memory>
#include <stdexcept>

namespace Analysis {

class Gazetteer;

/// A file that names places is missing or unusable. `what()` is one sentence for the user that names the
/// file.
class GazetteerError final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Names places from files on this machine, in microseconds, without a network or a quota. Names
/// are in English. Thread-safe.
///
/// The country is the one whose land or bank the point is on, near a border to a hundred metres, or whose
/// waters, as far as land is within sight; out at sea there is neither country nor city. The city is the town
/// someone would name: the one that the point lies in, or deepest in, taking towns for discs that grow with
/// their population; outside of all, the one whose edge is nearest, larger towns and seats of government
/// counting as nearer, those across water or in another state as farther. Towns across a border between
/// countries do not count, unless the town itself shows that the border is too coarse there. Beyond the reach
/// of any town, the second-level area stands for the city, then the first-level one.
class OfflineReverseGeocoder final : public ReverseGeocoding {
public:
    /// Opens and checks the files that tools/gazetteer writes. Throws GazetteerError.
    OfflineReverseGeocoder(const std::filesystem::path& gazetteer, const std::filesystem::path& landBorders);
    ~OfflineReverseGeocoder() override;

    /// Never throws. A coordinate that is not on Earth has neither city nor country.
    [[nodiscard]] Placemark placemark(const ProjectModel::Coordinate& coordinate,
                                      const std::stop_token& stop = {}) override;

private:
    std::unique_ptr<const Gazetteer> m_gazetteer;
};

} // namespace Analysis
