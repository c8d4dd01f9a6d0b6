// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/FittedPhoto.h>

#include <QPaintDevice>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace Grid {

namespace {

/// Of the thumbnail that is shown until the photo itself comes; the grid mostly has it.
constexpr int firstPixels = 384;

} // namespace

QRect FittedPhoto::paint(QPainter& painter, const QRect& area, const ProjectModel::PhotoItem& photo) {
    const QImage large = m_large ? m_large->photo(photo.id) : QImage{};
    const QImage source = large.isNull() ? m_feed->thumbnail(photo, firstPixels) : large;
    if (source.isNull() || area.isEmpty())
        return {};
    const double ratio = painter.device()->devicePixelRatioF();
    QSize shown = QSizeF{area.size() * ratio}.toSize();
    // A small photo is not blown up beyond its pixels, but its thumbnail stands for all of it.
    if (!large.isNull() && large.width() <= shown.width() && large.height() <= shown.height())
        shown = large.size();
    const QSize pixels = source.size().scaled(shown, Qt::KeepAspectRatio).expandedTo({1, 1});
    if (m_scaled.size() != pixels || m_scaledFrom != source.cacheKey()) {
        const QImage opaque = source.convertToFormat(QImage::Format_RGB32);
        m_scaled = QPixmap::fromImage(
            opaque.size() == pixels ? opaque
                                    : opaque.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        m_scaled.setDevicePixelRatio(ratio);
        m_scaledFrom = source.cacheKey();
    }
    const QSize size = (QSizeF{pixels} / ratio).toSize();
    const QRect place{area.topLeft() +
                          QPoint{(area.width() - size.width()) / 2, (area.height() - size.height()) / 2},
                      size};
    painter.drawPixmap(place.topLeft(), m_scaled);
    return place;
}

int FittedPhoto::pixelsFor(const QSize& area, double devicePixelRatio) {
    return static_cast<int>(std::lround(std::max(area.width(), area.height()) * devicePixelRatio));
}

} // namespace Grid
