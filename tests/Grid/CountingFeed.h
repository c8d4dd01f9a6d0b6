// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Roamly/Window/Grid/ThumbnailFeed.h>

#include <QColor>
#include <map>
#include <vector>

/// Thumbnails of one colour each, for those photos that it was told to have, and a memory of what was asked.
class CountingFeed : public Grid::ThumbnailFeed {
public:
    QImage thumbnail(const ProjectModel::PhotoItem& photo, int pixels) override {
        ++m_asked[photo.id];
        if (!m_hasAll && m_present.count(photo.id) == 0)
            return {};
        QImage image{pixels, pixels * 2 / 3, QImage::Format_RGB32};
        image.fill(colour);
        return image;
    }
    void wanted(std::span<const Foundation::Uuid> visible) override {
        m_visible.assign(visible.begin(), visible.end());
    }

    void haveAll() { m_hasAll = true; }
    /// Has it from now on, and tells.
    void deliver(const Foundation::Uuid& photo) {
        m_present[photo] = true;
        Q_EMIT ready(photo);
    }
    [[nodiscard]] int asked(const Foundation::Uuid& photo) const {
        const auto entry = m_asked.find(photo);
        return entry == m_asked.end() ? 0 : entry->second;
    }
    [[nodiscard]] const std::vector<Foundation::Uuid>& visible() const { return m_visible; }

    QColor colour{Qt::blue};

private:
    bool m_hasAll = false;
    std::map<Foundation::Uuid, bool> m_present;
    std::map<Foundation::Uuid, int> m_asked;
    std::vector<Foundation::Uuid> m_visible;
};
