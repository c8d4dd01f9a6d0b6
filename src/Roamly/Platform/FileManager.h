// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class QDBusConnection;

namespace Platform {

/// "Show in Files". For a thread with an event loop of Qt's.
class FileManager {
public:
    using FolderOpener = std::function<void(const std::filesystem::path& folder)>;

    /// `openFolder` stands in where no file manager answers on the bus.
    explicit FileManager(const QDBusConnection& bus, FolderOpener openFolder = openWithDesktop);

    /// Shows the files, marked, in their folders; returns at once. `activationToken` lets the file manager's
    /// window come to the front, where the desktop gave one.
    void show(const std::vector<std::filesystem::path>& files, const std::string& activationToken = {}) const;

    /// In the program that the user has for folders.
    static void openWithDesktop(const std::filesystem::path& folder);

private:
    struct State;
    std::shared_ptr<const State> m_state;
};

} // namespace Platform
