// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Platform/ThumbnailRequests.h>
#include <Roamly/Window/Grid/ThumbnailFeed.h>

#include <memory>
#include <set>
#include <unordered_map>

namespace Shell {

/// The grid's thumbnails, from those of all windows.
class Thumbnails : public Grid::ThumbnailFeed {
    Q_OBJECT

public:
    explicit Thumbnails(std::shared_ptr<Platform::ThumbnailProvider> provider, QObject* parent = nullptr);
    ~Thumbnails() override;

    [[nodiscard]] QImage thumbnail(const ProjectModel::PhotoItem& photo, int pixels) override;
    void wanted(std::span<const Foundation::Uuid> visible) override;

private:
    Platform::ThumbnailRequests m_requests;
    /// The size in which each photo on screen was asked for: once is enough.
    std::unordered_map<Foundation::Uuid, int> m_asked;
};

} // namespace Shell
