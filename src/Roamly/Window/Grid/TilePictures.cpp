// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/TilePictures.h>

#include <QImage>
#include <QPainter>
#include <cmath>
#include <memory>
#include <variant>

namespace Grid {

namespace {

QImage drawn(const QImage& thumbnail, bool fills, int pixels, double ratio, const QColor& tile) {
    QImage picture{pixels, pixels, QImage::Format_ARGB32_Premultiplied};
    picture.fill(Qt::transparent);
    const QSize size =
        thumbnail.size().scaled(pixels, pixels, fills ? Qt::KeepAspectRatioByExpanding : Qt::KeepAspectRatio);
    // Qt's smooth scaling wants this format and would convert to it anyway.
    QImage scaled = thumbnail.convertToFormat(QImage::Format_RGB32);
    if (scaled.size() != size)
        scaled = scaled.scaled(size.expandedTo({1, 1}), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QPoint corner{(pixels - scaled.width()) / 2, (pixels - scaled.height()) / 2};

    QPainter painter{&picture};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double radius = TilePictures::cornerRadius * ratio;
    painter.setBrush(tile);
    painter.drawRoundedRect(picture.rect(), radius, radius);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.drawImage(corner, scaled);
    painter.end();
    picture.setDevicePixelRatio(ratio);
    return picture;
}

} // namespace

TilePictures::TilePictures(ThumbnailFeed& feed, qsizetype boundInBytes)
    : m_feed(&feed)
    , m_pictures(boundInBytes) {}

QPixmap TilePictures::picture(const ProjectModel::PhotoItem& photo, int side, double ratio,
                              const QColor& tile) {
    const int pixels = static_cast<int>(std::lround(side * ratio));
    if (const QPixmap* kept = m_pictures.object({photo.id}); kept && kept->width() == pixels)
        return *kept;
    const QImage thumbnail = m_feed->thumbnail(photo, pixels);
    if (thumbnail.isNull())
        return {};
    const bool fills = std::holds_alternative<ProjectModel::LibraryPhotoRef>(photo.source);
    auto picture = std::make_unique<QPixmap>(
        QPixmap::fromImage(drawn(thumbnail, fills, pixels, ratio, tile), Qt::NoFormatConversion));
    const QPixmap result = *picture;
    m_pictures.insert({photo.id}, picture.release(), qsizetype{pixels} * pixels * 4);
    return result;
}

} // namespace Grid
