// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/ReverseGeocoding.h>
#include <Http/CurlTransport.h>
#include <Http/Transport.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace Analysis {

/// Asks a server that speaks Nominatim's protocol, one request a coordinate, in English. Only ever made when
/// the user has named a server: coordinates leave the machine. Thread-safe.
class NominatimReverseGeocoder final : public ReverseGeocoding {
public:
    using WallClock = std::function<std::chrono::sys_seconds()>;

    /// `baseUrl`: http or https, with or without a slash at its end, what stands before "/reverse".
    /// `userAgent` names the application and its version, as such servers ask of their users. `now` serves
    /// the refusals that name a date.
    NominatimReverseGeocoder(
        std::string baseUrl, std::string userAgent,
        std::shared_ptr<const Http::Transport> transport = std::make_shared<Http::CurlTransport>(),
        WallClock now = systemTime);

    /// The city is the smallest of city, town, village and the like; else the county, else the state. Throws
    /// GeocodingRateLimited for 429, and for 503 with a Retry-After, with the time that states;
    /// GeocodingError for other failures and answers that make no sense; Foundation::Cancelled as soon as
    /// `stop` is triggered.
    [[nodiscard]] Placemark placemark(const ProjectModel::Coordinate& coordinate,
                                      const std::stop_token& stop) override;

    /// The seconds that a Retry-After header names, directly or as the date of RFC 9110; nothing when it is
    /// neither. A date in the past is 0.
    [[nodiscard]] static std::optional<double> retryAfterSeconds(const std::string& header,
                                                                 std::chrono::sys_seconds now);

    [[nodiscard]] static std::chrono::sys_seconds systemTime();

private:
    std::string m_baseUrl;
    std::string m_userAgent;
    std::shared_ptr<const Http::Transport> m_transport;
    WallClock m_now;
};

} // namespace Analysis
