// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/RandomProject.h>

#include <algorithm>

namespace Document::Testing {

/// Makes of a project another one that shares most with it: photos changed, removed, added, moved, and some
/// with the id of another.
class ProjectVariations {
public:
    explicit ProjectVariations(std::uint64_t seed)
        : m_random(seed) {}

    [[nodiscard]] ProjectModel::Testing::RandomProject& random() { return m_random; }

    [[nodiscard]] ProjectModel::Project project(std::size_t mostPhotos = 12) {
        ProjectModel::Project project = m_random.project(mostPhotos);
        shareIds(project);
        return project;
    }

    [[nodiscard]] ProjectModel::Project variation(ProjectModel::Project project) {
        std::vector<ProjectModel::PhotoItem>& photos = project.photos;
        for (std::size_t i = m_random.below(4); i > 0; --i)
            vary(project);
        if (m_random.chance(0.2) && !photos.empty())
            std::rotate(photos.begin(), photos.begin() + somewhere(photos.size()), photos.end());
        if (m_random.chance(0.2))
            std::reverse(photos.begin(), photos.end());
        if (m_random.chance(0.1))
            shareIds(project);
        return project;
    }

private:
    std::ptrdiff_t somewhere(std::size_t size) { return static_cast<std::ptrdiff_t>(m_random.below(size)); }

    void vary(ProjectModel::Project& project) {
        std::vector<ProjectModel::PhotoItem>& photos = project.photos;
        switch (m_random.below(8)) {
        case 0:
            photos.insert(photos.begin() + somewhere(photos.size() + 1), m_random.photo(project.sources));
            break;
        case 1:
            if (!photos.empty())
                photos.erase(photos.begin() + somewhere(photos.size()));
            break;
        case 2:
            if (!photos.empty()) {
                ProjectModel::PhotoItem& photo = photos[m_random.below(photos.size())];
                const Foundation::Uuid id = photo.id;
                photo = m_random.photo(project.sources);
                photo.id = id;
            }
            break;
        case 3:
            if (!photos.empty())
                std::swap(photos.front(), photos[m_random.below(photos.size())]);
            break;
        case 4:
            project.settings = m_random.settings();
            break;
        case 5:
            project.sources.push_back(m_random.source());
            break;
        case 6:
            project.music = ProjectModel::MusicSelection{m_random.bytes(20), m_random.text()};
            break;
        default:
            project.usesManualOrder = !project.usesManualOrder;
            break;
        }
    }

    void shareIds(ProjectModel::Project& project) {
        for (ProjectModel::PhotoItem& photo : project.photos) {
            if (m_random.chance(0.2))
                photo.id = project.photos[m_random.below(project.photos.size())].id;
        }
    }

    ProjectModel::Testing::RandomProject m_random;
};

} // namespace Document::Testing
