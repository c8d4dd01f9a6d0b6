// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Coordinate.h>

#include <optional>
#include <stdexcept>
#include <stop_token>
#include <string>

namespace Analysis {

/// What a geocoder knows about a coordinate. Both may be absent: nothing is there.
struct Placemark {
    /// The town; far from towns the second-level area, else the first-level one.
    std::optional<std::string> city;
    /// The country's display name.
    std::optional<std::string> country;

    friend bool operator==(const Placemark&, const Placemark&) = default;
};

/// A geocoder could not answer.
class GeocodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The service refuses because it was asked too often.
class GeocodingRateLimited final : public GeocodingError {
public:
    /// `secondsUntilReset`: after how long the service says it accepts requests again; absent when it does
    /// not.
    explicit GeocodingRateLimited(std::optional<double> secondsUntilReset)
        : GeocodingError("the geocoding service is being asked too often")
        , m_secondsUntilReset(secondsUntilReset) {}

    [[nodiscard]] std::optional<double> secondsUntilReset() const { return m_secondsUntilReset; }

private:
    std::optional<double> m_secondsUntilReset;
};

/// Turns coordinates into the names of places.
class ReverseGeocoding {
public:
    virtual ~ReverseGeocoding() = default;

    /// Throws GeocodingError. `stop` ends a request that is under way, by whatever exception.
    [[nodiscard]] virtual Placemark placemark(const ProjectModel::Coordinate& coordinate,
                                              const std::stop_token& stop) = 0;
};

} // namespace Analysis
