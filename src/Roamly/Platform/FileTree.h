// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/BookmarkedFile.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>
#include <unordered_map>
#include <vector>

namespace Platform {

/// The files below a folder, for finding among them one that was elsewhere before. Hidden ones and what links
/// lead to are left out.
class FileTree {
public:
    /// Reads the folder. Throws Foundation::Cancelled.
    FileTree(const std::filesystem::path& folder, const std::stop_token& stop);

    /// How sure it is that a file is the one that was looked for; the higher the surer.
    struct Match {
        std::filesystem::path file;
        /// How many of the last components of the two paths are the same.
        std::size_t commonComponents = 0;
        bool isSameInode = false;

        [[nodiscard]] bool isSurerThan(const Match& other) const;
    };

    /// The one best match; nothing when there is none, or several are as good.
    [[nodiscard]] std::optional<Match> find(const Foundation::BookmarkedFile& wanted) const;

private:
    struct File {
        std::filesystem::path path;
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::uint64_t size = 0;
    };

    [[nodiscard]] static std::optional<Match> match(const Foundation::BookmarkedFile& wanted,
                                                    const File& file);

    std::vector<File> m_files;
    std::unordered_multimap<std::string, std::size_t> m_byName;
    std::unordered_multimap<std::uint64_t, std::size_t> m_byInode;
};

/// How many of the last components of two paths are the same.
[[nodiscard]] std::size_t commonComponents(const std::filesystem::path& a, const std::filesystem::path& b);

} // namespace Platform
