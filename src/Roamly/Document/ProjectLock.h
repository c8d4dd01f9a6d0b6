// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <functional>
#include <stop_token>

namespace Document {

/// What whoever waits for a project to be free is told and may do.
struct LockWait {
    /// Ends the waiting.
    std::stop_token stop = {};
    /// Called once, when it begins; may be absent.
    std::function<void()> waiting = {};
};

/// Keeps two programs from changing one project at the same time, which would lose the changes of the first
/// that saves. The project file itself is locked: nothing is left behind, and readers are not held up. Where
/// there is no file, or its file system has no locks, there is no lock either.
class ProjectLock {
public:
    /// Waits while somebody else holds the lock. Throws Foundation::Cancelled.
    ProjectLock(const std::filesystem::path& project, const LockWait& wait);
    ~ProjectLock();
    ProjectLock(const ProjectLock&) = delete;
    ProjectLock& operator=(const ProjectLock&) = delete;

private:
    int m_descriptor = -1;
};

} // namespace Document
