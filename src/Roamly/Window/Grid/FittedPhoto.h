// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/PhotoItem.h>
#include <Roamly/Window/Grid/LargePhotos.h>
#include <Roamly/Window/Grid/ThumbnailFeed.h>

#include <QPixmap>
#include <QRect>

class QPainter;

namespace Grid {

/// One photo fitted into an area, from the best pixels that are there: its thumbnail at first. Scaled once
/// for each size.
class FittedPhoto {
public:
    /// Borrows both; without large photos thumbnails are all there is.
    FittedPhoto(ThumbnailFeed& feed, const LargePhotos* large)
        : m_feed(&feed)
        , m_large(large) {}

    /// Draws it in the middle of the area and returns where it lies; the empty rectangle while there is
    /// nothing to be seen.
    QRect paint(QPainter& painter, const QRect& area, const ProjectModel::PhotoItem& photo);

    /// The pixels of the longest side that an area needs on a screen.
    [[nodiscard]] static int pixelsFor(const QSize& area, double devicePixelRatio);

private:
    ThumbnailFeed* m_feed;
    const LargePhotos* m_large;
    QPixmap m_scaled;
    qint64 m_scaledFrom = 0;
};

} // namespace Grid
