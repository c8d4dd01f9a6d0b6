// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/PhotoItem.h>
#include <ProjectModel/PhotoRefreshes.h>
#include <Roamly/Jobs/Job.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

namespace Jobs {

/// What looking for photos needs of the machine. Worker's thread; both throw Foundation::Cancelled.
struct PhotoFileEnvironment {
    using Photos = std::span<const ProjectModel::PhotoItem>;
    using Refreshes = std::vector<ProjectModel::PhotoRefresh>;

    std::function<Refreshes(Photos photos, const std::stop_token& stop)> check;
    std::function<Refreshes(Photos photos, const std::filesystem::path& chosen,
                            const std::optional<Foundation::Uuid>& meant, const std::stop_token& stop)>
        locate;
};

/// Looks in the background where the open project's photos are: all of them when it opens, and missing ones
/// where the user says. One search at a time: a newer one takes the place of the one before. Owner's thread.
class PhotoFileCheck {
public:
    /// What was found; also when that is nothing, so that a user who pointed somewhere can be told.
    using Found = std::function<void(const PhotoFileEnvironment::Refreshes& refreshes)>;

    /// `changed` is called when a search begins and after it has ended.
    PhotoFileCheck(Executor executor, PhotoFileEnvironment environment, std::function<void()> changed = {});

    [[nodiscard]] bool isRunning() const { return m_job.isRunning(); }

    void check(std::vector<ProjectModel::PhotoItem> photos, Found found);
    /// `meant` is the photo that a chosen file is to be.
    void locate(std::vector<ProjectModel::PhotoItem> photos, std::filesystem::path chosen,
                std::optional<Foundation::Uuid> meant, Found found);

    /// Nothing more is heard of the running search.
    void cancel();

private:
    using Search = std::function<PhotoFileEnvironment::Refreshes(PhotoFileEnvironment::Photos photos,
                                                                 const std::stop_token& stop)>;
    void start(Search search, std::vector<ProjectModel::PhotoItem> photos, Found found);
    void changed() const;

    std::shared_ptr<const PhotoFileEnvironment> m_environment;
    std::function<void()> m_changed;
    Job m_job;
};

} // namespace Jobs
