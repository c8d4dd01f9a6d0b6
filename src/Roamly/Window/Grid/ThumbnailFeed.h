// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/PhotoItem.h>

#include <QImage>
#include <QObject>
#include <span>

namespace Grid {

/// Where the grid's thumbnails come from. It is asked only on the window's thread and answers at once.
class ThumbnailFeed : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// A thumbnail whose longest side has about that many pixels, upright, if it is in memory. Otherwise a
    /// null image (or a smaller thumbnail): then it is asked for, and `ready` tells when it came.
    [[nodiscard]] virtual QImage thumbnail(const ProjectModel::PhotoItem& photo, int pixels) = 0;
    /// The photos that are on screen now, in their order: what was asked for other photos and has not begun
    /// is not worth doing any more.
    virtual void wanted(std::span<const Foundation::Uuid> visible) = 0;

Q_SIGNALS:
    /// `thumbnail` has something new for that photo. A photo without a picture is told once too, and
    /// `thumbnail` goes on to be null.
    void ready(const Foundation::Uuid& photo);
};

} // namespace Grid
