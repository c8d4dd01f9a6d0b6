// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/PhotoText.h>
#include <Timeline/TimelineBuilder.h>

#include <QDateTime>
#include <QLocale>
#include <QStringList>
#include <variant>

namespace Grid::PhotoText {

using ProjectModel::PhotoItem;

namespace {

/// The texts of the window are English, so the names of months are too.
QString dated(const QDate& date, const QString& format) {
    return QLocale{QLocale::English, QLocale::UnitedKingdom}.toString(date, format);
}

QDateTime local(Foundation::Instant instant, const QTimeZone& zone) {
    return QDateTime::fromSecsSinceEpoch(instant.time_since_epoch().count(), zone);
}

} // namespace

QString fileName(const PhotoItem& photo) {
    if (const auto* file = std::get_if<ProjectModel::FilePhotoRef>(&photo.source);
        file && !file->displayName.empty())
        return QString::fromStdString(file->displayName);
    return QStringLiteral("Photo");
}

QString name(const PhotoItem& photo) {
    return photo.caption && !photo.caption->empty() ? QString::fromStdString(*photo.caption)
                                                    : fileName(photo);
}

QString place(const PhotoItem& photo) {
    const std::optional<std::string> label = Timeline::TimelineBuilder::locationLabel(photo);
    return label ? QString::fromStdString(*label) : QString{};
}

QString description(const PhotoItem& photo, std::size_t groupSize, const QTimeZone& zone) {
    QStringList parts;
    if (const QString where = place(photo); !where.isEmpty()) {
        const bool isInferred = photo.location->provenance == ProjectModel::Provenance::inferred;
        parts << (isInferred ? QStringLiteral("approximately ") + where : where);
    } else {
        parts << QStringLiteral("no place");
    }
    if (photo.captureDate)
        parts << moment(*photo.captureDate, zone);
    parts << (photo.isSelected ? QStringLiteral("in the film") : QStringLiteral("left out"));
    if (groupSize > 1)
        parts << QStringLiteral("part of a group of %1").arg(groupSize);
    if (photo.isMissing)
        parts << QStringLiteral("file missing");
    return parts.join(QStringLiteral(", "));
}

QString whyNoFile(const PhotoItem& photo) {
    if (photo.isMissing)
        return QStringLiteral("The photo’s file is missing");
    if (!std::holds_alternative<ProjectModel::FilePhotoRef>(photo.source))
        return QStringLiteral("The photo is in a photo library");
    return {};
}

QString moment(Foundation::Instant instant, const QTimeZone& zone) {
    const QDateTime when = local(instant, zone);
    return dated(when.date(), QStringLiteral("d MMMM yyyy ")) + when.time().toString(QStringLiteral("HH:mm"));
}

QString dates(const Dates& dates, bool withYear, const QTimeZone& zone) {
    const QDate first = local(dates.first, zone).date();
    const QDate last = local(dates.last, zone).date();
    const bool years = withYear || first.year() != last.year();
    const QString whole = years ? QStringLiteral("d MMMM yyyy") : QStringLiteral("d MMMM");
    if (first == last)
        return dated(last, whole);
    const bool sameYear = first.year() == last.year();
    const QString shortest = sameYear && first.month() == last.month() ? QStringLiteral("d")
                             : sameYear                                ? QStringLiteral("d MMMM")
                                                                       : whole;
    return QStringLiteral("%1 to %2").arg(dated(first, shortest), dated(last, whole));
}

QString selectedOf(std::size_t selected, std::size_t all) {
    return QStringLiteral("%1 of %2 selected").arg(selected).arg(all);
}

} // namespace Grid::PhotoText
