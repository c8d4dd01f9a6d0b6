// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/EventLoop.h>
#include <Roamly/Window/Shell/Thumbnails.h>

#include <utility>

namespace Shell {

namespace {

/// Shares the pixels, which stay as long as the image does.
QImage imageOf(const Platform::Thumbnail& thumbnail) {
    auto* const held = new Platform::Thumbnail(thumbnail);
    return QImage{thumbnail->pixels.data(),
                  thumbnail->width,
                  thumbnail->height,
                  static_cast<qsizetype>(thumbnail->width) * 3,
                  QImage::Format_RGB888,
                  [](void* kept) { delete static_cast<Platform::Thumbnail*>(kept); },
                  held};
}

} // namespace

Thumbnails::Thumbnails(std::shared_ptr<Platform::ThumbnailProvider> provider, QObject* parent)
    : Grid::ThumbnailFeed(parent)
    , m_requests(
          std::move(provider), executorOf(this),
          [this](const Foundation::Uuid& photo, int, const Platform::Thumbnail&) { Q_EMIT ready(photo); }) {}

Thumbnails::~Thumbnails() = default;

QImage Thumbnails::thumbnail(const ProjectModel::PhotoItem& photo, int pixels) {
    const int size = Platform::ThumbnailRequests::sizeFor(pixels);
    // Also what is in memory is asked for once, to learn whether the file has changed.
    const auto asked = m_asked.find(photo.id);
    if (asked == m_asked.end() || asked->second != size) {
        m_asked[photo.id] = size;
        m_requests.request(photo.id, photo.source, size);
    }
    const auto known = m_requests.find(photo.source, size);
    return known && *known ? imageOf(*known) : QImage{};
}

void Thumbnails::wanted(std::span<const Foundation::Uuid> visible) {
    m_requests.keepOnly(visible);
    const std::set<Foundation::Uuid> kept{visible.begin(), visible.end()};
    std::erase_if(m_asked, [&](const auto& entry) { return !kept.contains(entry.first); });
}

} // namespace Shell
