// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <filesystem>
#include <functional>
#include <vector>

class QWidget;

namespace Shell {

using Paths = std::vector<std::filesystem::path>;

/// How files and folders are chosen. Each shows a dialog over the window and returns at once; `chosen` is
/// called when the user agreed, and never otherwise.
struct FileChoosers {
    using ManyChosen = std::function<void(const Paths&)>;
    using OneChosen = std::function<void(const std::filesystem::path&)>;

    std::function<void(QWidget* window, ManyChosen chosen)> foldersToImport;
    std::function<void(QWidget* window, OneChosen chosen)> project;
    /// `sentence` says why the user is asked, where that is not plain; `proposed` is a path or a name.
    std::function<void(QWidget* window, const QString& sentence, const std::filesystem::path& proposed,
                       OneChosen chosen)>
        whereToSaveProject;
    std::function<void(QWidget* window, OneChosen chosen)> music;
    /// Where missing photos are now.
    std::function<void(QWidget* window, OneChosen chosen)> folderOfMissing;
    std::function<void(QWidget* window, const QString& proposedName,
                       std::function<void(const QString&)> chosen)>
        movie;
};

/// The desktop's own dialogs, or Qt's.
[[nodiscard]] FileChoosers desktopFileChoosers(bool native);

} // namespace Shell
