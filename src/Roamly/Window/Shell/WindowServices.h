// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Instant.h>
#include <Roamly/Document/AppSettings.h>
#include <Roamly/Jobs/PhotoFileCheck.h>
#include <Roamly/Platform/ThumbnailProvider.h>
#include <Roamly/Window/Grid/LargePhotos.h>
#include <Roamly/Window/Shell/FileChoosers.h>
#include <Roamly/Window/Shell/RecoveryKeeper.h>
#include <Roamly/Window/Shell/Work.h>

#include <QString>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Shell {

using MakeRecoveryPlace = std::function<RecoveryPlace(const ProjectPath& path)>;

/// What a window needs of the machine and the desktop. What takes its time is called on a worker, or returns
/// at once and goes on by itself.
struct WindowServices {
    std::function<Document::AppSettings()> settings;
    /// Stores one of the user's settings by its name in the table; an empty text takes back what may be
    /// absent. A sentence when that could not be done.
    std::function<std::optional<std::string>(const std::string& name, const std::string& text)> setSetting;
    Engines engines;
    FileChoosers choosers;
    /// Whether file dialogs are the desktop's own.
    std::function<bool()> usesNativeDialogs;
    std::function<void(bool)> setUsesNativeDialogs;
    /// A photo for the screen, its longest side at most so many pixels; nothing when that fails. Any thread.
    Grid::LargePhotos::Load photo;
    /// Whether details are shown beside the photos.
    std::function<bool()> showsDetails;
    std::function<void(bool)> setShowsDetails;
    /// Of all windows; null in tests that show no photo.
    std::shared_ptr<Platform::ThumbnailProvider> thumbnails;
    std::function<std::vector<std::filesystem::path>()> recentProjects;
    std::function<void(const std::filesystem::path&)> addRecentProject;
    /// A place of its own for each window.
    MakeRecoveryPlace recovery;
    /// Tells the user what ended while they look elsewhere.
    std::function<void(const QString& title, const QString& text)> notify;
    /// The machine stays awake as long as what is returned lives.
    std::function<std::shared_ptr<void>(const QString& reason)> keepAwake;
    std::function<void(const std::filesystem::path&)> showInFiles;
    Jobs::PhotoFileEnvironment checkPhotos;
    /// Seconds of a clock that never goes back.
    std::function<double()> now;
};

/// This machine and its desktop.
[[nodiscard]] WindowServices desktopServices();

/// What a crash left of an unsaved project.
struct LeftOver {
    /// The project's own file; absent when it was never saved.
    std::optional<std::filesystem::path> original;
    Foundation::Instant written;
    /// A project file.
    std::filesystem::path copy;
    /// Makes it the place of the window that shows it from now on; nothing when another program did.
    std::function<std::optional<RecoveryPlace>(const ProjectPath& path)> take;
};

/// The newest first.
[[nodiscard]] std::vector<LeftOver> leftOvers();

} // namespace Shell
