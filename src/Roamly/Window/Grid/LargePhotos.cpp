// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/LargePhotos.h>

#include <QMetaObject>
#include <algorithm>
#include <utility>

namespace Grid {

using Foundation::Uuid;

namespace {

/// In the format that is painted fastest.
QImage imageOf(const Foundation::Image& photo) {
    return QImage{photo.pixels.data(), photo.width, photo.height, static_cast<qsizetype>(photo.width) * 3,
                  QImage::Format_RGB888}
        .convertToFormat(QImage::Format_RGB32);
}

} // namespace

LargePhotos::LargePhotos(Load load, QObject* parent)
    : QObject(parent)
    , m_load(std::move(load)) {
    if (m_load)
        m_worker = std::jthread{[this](const std::stop_token& stop) { work(stop); }};
}

LargePhotos::~LargePhotos() = default;

void LargePhotos::wish(std::vector<Wish> wishes) {
    m_wished = std::move(wishes);
    std::erase_if(m_kept, [this](const auto& entry) {
        return std::ranges::find(m_wished, entry.first, &Wish::photo) == m_wished.end();
    });
    const std::scoped_lock lock{m_mutex};
    m_waiting.clear();
    for (const Wish& wish : m_wished) {
        const auto kept = m_kept.find(wish.photo);
        const bool isKept = kept != m_kept.end() && kept->second.pixels >= wish.pixels;
        const bool isUnderWay = std::ranges::any_of(m_begun, [&wish](const Wish& begun) {
            return begun.photo == wish.photo && begun.pixels >= wish.pixels;
        });
        if (!isKept && !isUnderWay)
            m_waiting.push_back(wish);
    }
    m_hasMore.notify_one();
}

QImage LargePhotos::photo(const Uuid& photo) const {
    const auto kept = m_kept.find(photo);
    return kept == m_kept.end() ? QImage{} : kept->second.image;
}

void LargePhotos::work(const std::stop_token& stop) {
    while (true) {
        Wish wish;
        {
            std::unique_lock lock{m_mutex};
            if (!m_hasMore.wait(lock, stop, [this] { return !m_waiting.empty(); }))
                return;
            wish = std::move(m_waiting.front());
            m_waiting.erase(m_waiting.begin());
            m_begun.push_back(wish);
        }
        const std::optional<Foundation::Image> loaded = m_load(wish.source, wish.pixels);
        const QImage image = loaded && !loaded->isEmpty() ? imageOf(*loaded) : QImage{};
        QMetaObject::invokeMethod(
            this, [this, photo = wish.photo, decoded = Kept{image, wish.pixels}] { keep(photo, decoded); },
            Qt::QueuedConnection);
    }
}

void LargePhotos::keep(const Uuid& photo, Kept decoded) {
    {
        const std::scoped_lock lock{m_mutex};
        std::erase_if(m_begun, [&](const Wish& begun) {
            return begun.photo == photo && begun.pixels == decoded.pixels;
        });
    }
    const bool isWished = std::ranges::find(m_wished, photo, &Wish::photo) != m_wished.end();
    if (!isWished)
        return;
    m_kept[photo] = std::move(decoded);
    Q_EMIT ready(photo);
}

} // namespace Grid
