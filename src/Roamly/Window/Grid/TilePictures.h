// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/PhotoItem.h>
#include <Roamly/Window/Grid/ThumbnailFeed.h>

#include <QCache>
#include <QColor>
#include <QPixmap>

namespace Grid {

/// Photos as the grid's tiles show them, drawn once each: a file's photo fitted, a library's photo filling,
/// on the tile's colour, with round corners. Kept up to a bound of bytes, so that scrolling only copies.
class TilePictures {
public:
    static constexpr double cornerRadius = 6;

    /// Borrows the feed.
    explicit TilePictures(ThumbnailFeed& feed, qsizetype boundInBytes = qsizetype{96} << 20);

    /// A picture of `side` pixels by `ratio` device pixels; null until its thumbnail comes.
    [[nodiscard]] QPixmap picture(const ProjectModel::PhotoItem& photo, int side, double ratio,
                                  const QColor& tile);
    /// Its thumbnail is another one now.
    void forget(const Foundation::Uuid& photo) { m_pictures.remove({photo}); }
    /// Colours are other ones now.
    void clear() { m_pictures.clear(); }

private:
    struct Key {
        Foundation::Uuid photo;

        friend bool operator==(const Key&, const Key&) = default;
        friend std::size_t qHash(const Key& key, std::size_t seed = 0) noexcept {
            return std::hash<Foundation::Uuid>{}(key.photo) ^ seed;
        }
    };

    ThumbnailFeed* m_feed;
    QCache<Key, QPixmap> m_pictures;
};

} // namespace Grid
