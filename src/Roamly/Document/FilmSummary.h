// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>
#include <Timeline/EffectiveSettings.h>

#include <cstddef>
#include <optional>
#include <string>

namespace Document {

/// A project in one line: how much of it is in the film, how long the film is and what plays with it.
struct FilmSummary {
    std::size_t selected = 0;
    std::size_t photos = 0;
    /// Seconds.
    double film = 0;
    bool hasMusic = false;
    /// Seconds; absent while it is not known.
    std::optional<double> music;

    friend bool operator==(const FilmSummary&, const FilmSummary&) = default;
};

[[nodiscard]] FilmSummary summarize(const ProjectModel::Project& project,
                                    const Timeline::EffectiveSettings& settings,
                                    const std::optional<double>& musicSeconds);

/// "82 of 146 photos selected · film 7:00 · music 3:10, looped".
[[nodiscard]] std::string describe(const FilmSummary& summary);

/// "7:00", "1:02:03"; to the nearest second, seconds ≥ 0.
[[nodiscard]] std::string clockText(double seconds);

} // namespace Document
