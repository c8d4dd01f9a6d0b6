// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>
#include <filesystem>
#include <optional>
#include <variant>
#include <vector>

namespace Shell {

/// Opens a new, empty project, or brings a window to the front where there is one already.
struct ShowWindow {
    bool inNewWindow = false;

    friend bool operator==(const ShowWindow&, const ShowWindow&) = default;
};

/// Opens projects, a window each, and imports photos and folders into a new one. Absolute paths.
struct OpenFiles {
    std::vector<std::filesystem::path> projects;
    std::vector<std::filesystem::path> photos;

    friend bool operator==(const OpenFiles&, const OpenFiles&) = default;
};

/// Opens just the player; without a project the user chooses one.
struct PlayProject {
    std::optional<std::filesystem::path> project;
    /// Seconds from the film's beginning.
    double from = 0;
    bool inWindow = false;

    friend bool operator==(const PlayProject&, const PlayProject&) = default;
};

/// Waits for what others ask over the bus.
struct Serve {
    friend bool operator==(const Serve&, const Serve&) = default;
};

/// What a start of the program asks for. A plain value.
using LaunchRequest = std::variant<ShowWindow, OpenFiles, PlayProject, Serve>;

/// What the words after the program's name ask for; file names are taken from `folder`.
[[nodiscard]] LaunchRequest launchRequest(const QStringList& words, const std::filesystem::path& folder);

/// Which of the files are projects, and which are to be imported.
[[nodiscard]] OpenFiles sorted(const std::vector<std::filesystem::path>& files);

/// What was dropped onto a window.
struct DroppedFiles {
    std::vector<std::filesystem::path> projects;
    /// Photos and folders.
    std::vector<std::filesystem::path> photos;
    std::vector<std::filesystem::path> music;
};
/// Asks the MIME database by name and content.
[[nodiscard]] DroppedFiles droppedFiles(const QList<QUrl>& urls);

/// The local files among the addresses.
[[nodiscard]] std::vector<std::filesystem::path> localFiles(const QList<QUrl>& urls);

} // namespace Shell
