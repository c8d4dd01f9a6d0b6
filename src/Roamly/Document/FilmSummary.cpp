// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/FilmSummary.h>
#include <Timeline/TimelineBuilder.h>

#include <algorithm>
#include <cmath>

namespace Document {

namespace {

std::string twoDigits(long long value) {
    const std::string digits = std::to_string(value);
    return std::string(digits.size() < 2 ? 1U : 0U, '0').append(digits);
}

} // namespace

FilmSummary summarize(const ProjectModel::Project& project, const Timeline::EffectiveSettings& settings,
                      const std::optional<double>& musicSeconds) {
    const auto isSelected = [](const ProjectModel::PhotoItem& photo) { return photo.isSelected; };
    FilmSummary summary;
    summary.selected = static_cast<std::size_t>(std::ranges::count_if(project.photos, isSelected));
    summary.photos = project.photos.size();
    summary.film = Timeline::TimelineBuilder::build(project, settings).totalDuration;
    summary.hasMusic = project.music.has_value();
    if (summary.hasMusic)
        summary.music = musicSeconds;
    return summary;
}

std::string describe(const FilmSummary& summary) {
    if (summary.photos == 0)
        return "No photos";
    std::string text = std::to_string(summary.selected) + " of " + std::to_string(summary.photos) +
                       (summary.photos == 1 ? " photo selected" : " photos selected");
    text += " · film " + clockText(summary.film);
    if (!summary.hasMusic)
        return text + " · no music";
    if (!summary.music)
        return text + " · music";
    text += " · music " + clockText(*summary.music);
    return *summary.music < summary.film ? text + ", looped" : text;
}

std::string clockText(double seconds) {
    const long long whole = std::llround(seconds);
    const std::string tail = ":" + twoDigits(whole % 60);
    const long long minutes = whole / 60;
    return minutes < 60 ? std::to_string(minutes) + tail
                        : std::to_string(minutes / 60) + ":" + twoDigits(minutes % 60) + tail;
}

} // namespace Document
