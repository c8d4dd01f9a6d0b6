// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace Platform {

/// The projects opened last: a list of the program's own, and the desktop's, which file managers and the
/// dialogs of other programs show. Any thread, one at a time; the disk is waited for.
class RecentFiles {
public:
    static constexpr std::size_t mostFiles = 10;

    struct Places {
        /// A line a file, as its URI, the newest first.
        std::filesystem::path ownList;
        /// `recently-used.xbel`.
        std::filesystem::path desktopList;
    };

    /// In the user's folders.
    [[nodiscard]] static Places usualPlaces();

    explicit RecentFiles(Places places);

    /// The files that are there, the newest first.
    [[nodiscard]] std::vector<std::filesystem::path> list() const;

    /// Opened or saved just now: the first of both lists. Best effort: a folder that takes no files keeps
    /// nobody from working. A desktop's list that cannot be read is left as it is.
    void add(const std::filesystem::path& file);

    /// Empties the own list and takes its files from the desktop's, where another program does not list them
    /// too.
    void clear();

private:
    Places m_places;
};

} // namespace Platform
