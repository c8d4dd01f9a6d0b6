// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>

#include <QPixmap>
#include <cstddef>
#include <memory>
#include <vector>

class QFont;
class QMimeData;
class QWidget;

namespace Theme {
struct Colours;
}

/// What travels with the pointer while photos of the grid are dragged.
namespace Grid::PhotoDrag {

[[nodiscard]] std::unique_ptr<QMimeData> mimeData(const std::vector<Foundation::Uuid>& photos);
[[nodiscard]] bool holdsPhotos(const QMimeData& data);
/// Nothing for data of another kind.
[[nodiscard]] std::vector<Foundation::Uuid> photos(const QMimeData& data);

/// Lets the user drag the photos from the widget; returns when they were dropped.
void run(QWidget& from, const std::vector<Foundation::Uuid>& photos, const QPixmap& picture);

/// The picture of the photo the drag began at, over sheets that stand for the others, with their number.
[[nodiscard]] QPixmap picture(const QPixmap& tile, std::size_t count, const Theme::Colours& colours,
                              const QFont& font, double ratio);

} // namespace Grid::PhotoDrag
