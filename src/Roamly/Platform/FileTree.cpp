// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Roamly/Platform/FileTree.h>

#include <sys/stat.h>

#include <iterator>
#include <system_error>
#include <tuple>
#include <utility>

namespace Platform {

namespace fs = std::filesystem;

std::size_t commonComponents(const fs::path& a, const fs::path& b) {
    std::size_t count = 0;
    auto atA = a.end();
    auto atB = b.end();
    while (atA != a.begin() && atB != b.begin() && *std::prev(atA) == *std::prev(atB)) {
        --atA;
        --atB;
        ++count;
    }
    return count;
}

bool FileTree::Match::isSurerThan(const Match& other) const {
    return std::tie(isSameInode, commonComponents) > std::tie(other.isSameInode, other.commonComponents);
}

FileTree::FileTree(const fs::path& folder, const std::stop_token& stop) {
    std::error_code error;
    fs::recursive_directory_iterator entry{folder, fs::directory_options::skip_permission_denied, error};
    for (; !error && entry != fs::recursive_directory_iterator{}; entry.increment(error)) {
        Foundation::throwIfStopped(stop);
        const fs::path& path = entry->path();
        if (path.filename().native().starts_with('.')) {
            entry.disable_recursion_pending();
            continue;
        }
        struct stat status {};
        if (::lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
            continue;
        m_byName.emplace(path.filename().native(), m_files.size());
        m_byInode.emplace(status.st_ino, m_files.size());
        m_files.push_back({path, status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size)});
    }
}

std::optional<FileTree::Match> FileTree::match(const Foundation::BookmarkedFile& wanted, const File& file) {
    Match match{file.path, commonComponents(wanted.path, file.path), false};
    if (!wanted.identity)
        return match.commonComponents > 0 ? std::optional{match} : std::nullopt;
    const bool isSameSize = wanted.identity->size == file.size;
    // Devices of drives that come and go change their numbers: the same name stands in for it.
    match.isSameInode = isSameSize && wanted.identity->inode == file.inode &&
                        (wanted.identity->device == file.device || match.commonComponents > 0);
    // Of another size, it was changed since: then its folder's name must speak for it as well.
    const std::size_t needed = isSameSize ? 1 : 2;
    if (match.isSameInode || match.commonComponents >= needed)
        return match;
    return std::nullopt;
}

std::optional<FileTree::Match> FileTree::find(const Foundation::BookmarkedFile& wanted) const {
    std::optional<Match> best;
    bool isOnly = false;
    const auto consider = [&](const File& file) {
        const std::optional<Match> found = match(wanted, file);
        if (!found || (best && best->file == found->file))
            return;
        if (!best || found->isSurerThan(*best)) {
            best = found;
            isOnly = true;
        } else if (!best->isSurerThan(*found)) {
            isOnly = false;
        }
    };
    const auto [firstName, lastName] = m_byName.equal_range(wanted.path.filename().native());
    for (auto entry = firstName; entry != lastName; ++entry)
        consider(m_files[entry->second]);
    if (wanted.identity) {
        const auto [firstInode, lastInode] = m_byInode.equal_range(wanted.identity->inode);
        for (auto entry = firstInode; entry != lastInode; ++entry)
            consider(m_files[entry->second]);
    }
    return isOnly ? best : std::nullopt;
}

} // namespace Platform
