// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/PhotoText.h>
#include <Roamly/Window/Grid/Sections.h>
#include <Timeline/ChapterWalk.h>

#include <QDateTime>
#include <algorithm>
#include <optional>
#include <utility>

namespace Grid {

using ProjectModel::PhotoItem;

namespace {

struct Gathered {
    std::optional<std::string> chapter;
    std::size_t first = 0;
    std::size_t count = 0;
    std::size_t selected = 0;
    bool hasFilmPhotos = false;
    std::optional<PhotoText::Dates> dates;

    void add(const PhotoItem& photo, bool isShown) {
        hasFilmPhotos |= photo.isSelected;
        if (!isShown)
            return;
        ++count;
        selected += photo.isSelected ? 1 : 0;
        if (!photo.captureDate)
            return;
        if (!dates)
            dates = PhotoText::Dates{*photo.captureDate, *photo.captureDate};
        dates->first = std::min(dates->first, *photo.captureDate);
        dates->last = std::max(dates->last, *photo.captureDate);
    }
};

std::vector<Gathered> gathered(std::span<const PhotoItem> photos, const std::vector<bool>& shown) {
    std::vector<Gathered> result(1);
    Timeline::ChapterWalk chapters;
    std::size_t row = 0;
    for (std::size_t position = 0; position < photos.size(); ++position) {
        if (std::optional<std::string> title = chapters.enter(photos[position])) {
            const bool takesOver =
                result.size() == 1 && !result.front().chapter && !result.front().hasFilmPhotos;
            if (takesOver) {
                result.front().chapter = std::move(title);
            } else {
                Gathered chapter;
                chapter.chapter = std::move(title);
                chapter.first = row;
                result.push_back(std::move(chapter));
            }
        }
        result.back().add(photos[position], shown[position]);
        row += shown[position] ? 1 : 0;
    }
    std::erase_if(result, [](const Gathered& section) { return section.count == 0; });
    return result;
}

/// Whether the dates need their years to be told apart.
bool spansYears(const std::vector<Gathered>& all, const QTimeZone& zone) {
    std::optional<int> year;
    for (const Gathered& section : all) {
        if (!section.dates)
            continue;
        for (const Foundation::Instant instant : {section.dates->first, section.dates->last}) {
            const int its =
                QDateTime::fromSecsSinceEpoch(instant.time_since_epoch().count(), zone).date().year();
            if (year.value_or(its) != its)
                return true;
            year = its;
        }
    }
    return false;
}

QString titleOf(const Gathered& section) {
    if (section.chapter)
        return QString::fromStdString(*section.chapter);
    return section.hasFilmPhotos ? QStringLiteral("No place yet") : QStringLiteral("Left out");
}

} // namespace

std::vector<Section> sectionsOf(std::span<const PhotoItem> photos, const std::vector<bool>& shown,
                                const QTimeZone& zone) {
    const std::vector<Gathered> all = gathered(photos, shown);
    const bool withYear = spansYears(all, zone);
    std::vector<Section> result;
    result.reserve(all.size());
    for (const Gathered& section : all) {
        QString details = PhotoText::selectedOf(section.selected, section.count);
        if (section.dates)
            details.prepend(PhotoText::dates(*section.dates, withYear, zone) + QStringLiteral(" · "));
        result.push_back({section.first, section.count, titleOf(section), details});
    }
    return result;
}

} // namespace Grid
