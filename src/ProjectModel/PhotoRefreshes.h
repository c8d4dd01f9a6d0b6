// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/PhotoItem.h>

#include <unordered_map>
#include <vector>

namespace ProjectModel {

/// What was found out about where a photo's pixels are. It is nobody's decision, only newer knowledge of the
/// disk. The photo is meant by its id and the source it had: a late answer leaves one alone that has another
/// source by now.
struct PhotoRefresh {
    Foundation::Uuid id;
    PhotoRef was;
    PhotoRef source;
    bool isMissing;
};

/// Refreshes of many photos, looked up by photo. A plain value.
class PhotoRefreshes {
public:
    explicit PhotoRefreshes(const std::vector<PhotoRefresh>& refreshes);

    void applyTo(PhotoItem& photo) const;

private:
    std::unordered_multimap<Foundation::Uuid, PhotoRefresh> m_refreshes;
};

} // namespace ProjectModel
