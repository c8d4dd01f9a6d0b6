// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/LocationResolver.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace Analysis {

namespace {

/// Added to what a service says, which tends to be rounded down.
constexpr double resetMarginSeconds = 1;
/// Whatever a service says, an analysis does not stand still for longer.
constexpr double longestResetSeconds = 60;

} // namespace

LocationResolver::LocationResolver(GeocodeCache& cache, ReverseGeocoding& geocoder, int maxRequests,
                                   Clock::Duration window, Clock& clock)
    : m_cache(cache)
    , m_geocoder(geocoder)
    , m_maxRequests(maxRequests)
    , m_window(window)
    , m_clock(clock) {}

std::optional<ProjectModel::ResolvedLocation>
LocationResolver::resolve(const ProjectModel::Coordinate& coordinate, const std::stop_token& stop) {
    if (!isOnEarth(coordinate))
        return std::nullopt;
    if (auto known = m_cache.lookup(coordinate))
        return known;

    for (bool mayRetry = true;; mayRetry = false) {
        pace(stop);
        try {
            Placemark found = m_geocoder.placemark(coordinate, stop);
            ProjectModel::ResolvedLocation location{std::move(found.city), std::move(found.country),
                                                    ProjectModel::Provenance::geocoded};
            m_cache.store(location, coordinate);
            return location;
        } catch (const std::exception& error) {
            const auto reset = throttleResetSeconds(error);
            if (!mayRetry || !reset)
                return std::nullopt;
            m_clock.sleep(Clock::Duration(std::min(*reset + resetMarginSeconds, longestResetSeconds)), stop);
        }
    }
}

std::optional<double> LocationResolver::throttleResetSeconds(const std::exception& error) {
    const auto* refusal = dynamic_cast<const GeocodingRateLimited*>(&error);
    if (!refusal)
        return std::nullopt;
    return refusal->secondsUntilReset().value_or(0);
}

void LocationResolver::pace(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    if (m_maxRequests >= 1 && m_window > Clock::Duration::zero()) {
        forgetAged();
        if (m_recent.size() >= static_cast<std::size_t>(m_maxRequests)) {
            const Clock::Duration wait = m_window - (m_clock.now() - m_recent.front());
            if (wait > Clock::Duration::zero()) {
                lock.unlock();
                m_clock.sleep(wait, stop);
                lock.lock();
            }
            forgetAged();
        }
    }
    m_recent.push_back(m_clock.now());
}

void LocationResolver::forgetAged() {
    const Clock::Duration now = m_clock.now();
    std::erase_if(m_recent, [&](Clock::Duration instant) { return now - instant >= m_window; });
}

} // namespace Analysis
