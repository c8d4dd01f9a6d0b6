#pragma once

#include <filesystem>
#include <functional>
#include <stop_token>

namespace CommandLine {

/// Keeps two commands from changing one project at the same time, which would lose the changes of the first
/// that saves. The project file itself is locked: nothing is left behind, and readers are not held up. Where
/// there is no file, or its file system has no locks, there is no lock either.
class ProjectLock {
public:
    /// Waits while another command holds the lock, after calling `waiting` once. Throws
    /// Foundation::Cancelled.
    ProjectLock(const std::filesystem::path& project, const std::stop_token& stop,
                const std::function<void()>& waiting);
    ~ProjectLock();
    ProjectLock(const ProjectLock&) = delete;
    ProjectLock& operator=(const ProjectLock&) = delete;

private:
    int m_descriptor = -1;
};

} // namespace CommandLine
