#pragma once

#include <Roamly/Document/AppSettings.h>
#include <Roamly/Window/Shell/FileChoosers.h>
#include <Roamly/Window/Shell/RecoveryKeeper.h>
#include <Roamly/Window/Shell/Work.h>

#include <QString>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace Shell {

/// What a window needs of the machine and the desktop. What takes its time is called on a worker, or returns
/// at once and goes on by itself.
struct WindowServices {
    std::function<Document::AppSettings()> settings;
    Engines engines;
    FileChoosers choosers;
    std::function<std::vector<std::filesystem::path>()> recentProjects;
    std::function<void(const std::filesystem::path&)> addRecentProject;
    /// A place of its own for each window; the path is that of the project's file, where it has one.
    std::function<RecoveryPlace(std::function<std::optional<std::filesystem::path>()> path)> recovery;
    /// Tells the user what ended while they look elsewhere.
    std::function<void(const QString& title, const QString& text)> notify;
    /// The machine stays awake as long as what is returned lives.
    std::function<std::shared_ptr<void>(const QString& reason)> keepAwake;
    std::function<void(const std::filesystem::path&)> showInFiles;
    /// Seconds of a clock that never goes back.
    std::function<double()> now;
};

/// This machine and its desktop.
[[nodiscard]] WindowServices desktopServices();

} // namespace Shell
