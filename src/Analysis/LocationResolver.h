// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/Clock.h>
#include <Analysis/GeocodeCache.h>
#include <Analysis/ReverseGeocoding.h>
#include <ProjectModel/Coordinate.h>
#include <ProjectModel/ResolvedLocation.h>

#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <stop_token>

namespace Analysis {

/// Names the places of coordinates: from the cache, else from a geocoder, which it asks at most `maxRequests`
/// times within any `window`, and once more after a refusal for being asked too often. Lives for one analysis
/// run. Thread-safe, though the pace is meant for one call after another.
class LocationResolver {
public:
    /// Borrows all three for its lifetime. There is no pacing when `maxRequests` is less than 1 or `window`
    /// not greater than zero.
    LocationResolver(GeocodeCache& cache, ReverseGeocoding& geocoder, int maxRequests, Clock::Duration window,
                     Clock& clock);

    /// The place, with provenance `geocoded` when it was asked for now. Every answer of the geocoder is
    /// cached, one without any name too. Nothing when the geocoder fails, which is not cached, and for a
    /// coordinate that is not on Earth.
    [[nodiscard]] std::optional<ProjectModel::ResolvedLocation>
    resolve(const ProjectModel::Coordinate& coordinate, const std::stop_token& stop = {});

    /// How long to wait before asking once more: what the service said, 0 when it did not say; nothing when
    /// the error is no refusal for being asked too often.
    [[nodiscard]] static std::optional<double> throttleResetSeconds(const std::exception& error);

private:
    /// Waits as long as the quota asks for and counts the request that follows.
    void pace(const std::stop_token& stop);
    void forgetAged();

    GeocodeCache& m_cache;
    ReverseGeocoding& m_geocoder;
    int m_maxRequests;
    Clock::Duration m_window;
    Clock& m_clock;
    std::mutex m_mutex;
    /// When the recent requests were let through, oldest first.
    std::deque<Clock::Duration> m_recent;
};

} // namespace Analysis
