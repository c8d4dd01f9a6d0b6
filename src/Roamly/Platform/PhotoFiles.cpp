// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bookmark.h>
#include <Foundation/BookmarkedFile.h>
#include <Foundation/Cancellation.h>
#include <Foundation/DisplayText.h>
#include <Roamly/Platform/FileTree.h>
#include <Roamly/Platform/PhotoFiles.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <system_error>
#include <utility>
#include <variant>

namespace Platform::PhotoFiles {

namespace {

namespace fs = std::filesystem;
using Foundation::BookmarkedFile;
using ProjectModel::FilePhotoRef;
using ProjectModel::PhotoItem;
using ProjectModel::PhotoRefresh;

bool isFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

/// Whether the file is as large as the one that was bookmarked.
bool hasSize(const fs::path& file, const BookmarkedFile& wanted) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file, error);
    return !error && (!wanted.identity || wanted.identity->size == size);
}

/// Whether a bookmark that led to `path` should be made anew.
bool isOutdated(const Foundation::Bytes& bookmark, const Foundation::Bytes& present, const fs::path& path) {
    const std::optional<BookmarkedFile> before = Foundation::readBookmark(bookmark);
    const std::optional<BookmarkedFile> now = Foundation::readBookmark(present);
    // A bare path says all that its writer knew.
    if (!before || !before->identity || !now || !now->identity)
        return false;
    return before->path != path || before->identity->inode != now->identity->inode;
}

std::optional<FilePhotoRef> refTo(const fs::path& file) {
    std::optional<Foundation::Bytes> bookmark = Foundation::makeBookmark(file);
    if (!bookmark)
        return std::nullopt;
    return FilePhotoRef{std::move(*bookmark), Foundation::displayText(file.filename())};
}

/// A photo whose file is not where it was.
struct Lost {
    const PhotoItem* photo = nullptr;
    BookmarkedFile file;
};

/// A folder that moved: what was below the one is below the other.
struct MovedFolder {
    fs::path from;
    fs::path to;
};

fs::path withoutLast(fs::path path, std::size_t components) {
    for (; components > 0; --components)
        path = path.parent_path();
    return path;
}

MovedFolder movedFolder(const fs::path& before, const fs::path& now) {
    const std::size_t common = std::max<std::size_t>(1, commonComponents(before, now));
    return {withoutLast(before, common), withoutLast(now, common)};
}

class Search {
public:
    Search(std::span<const PhotoItem> photos, const std::stop_token& stop)
        : m_stop(stop) {
        for (const PhotoItem& photo : photos) {
            const auto* ref = std::get_if<FilePhotoRef>(&photo.source);
            std::optional<BookmarkedFile> file = ref ? Foundation::readBookmark(ref->bookmark) : std::nullopt;
            if (!file)
                continue;
            if (photo.isMissing || !isFile(file->path))
                m_lost.push_back({&photo, std::move(*file)});
            else
                m_taken.insert(file->path);
        }
    }

    void takeFile(const fs::path& file, const std::optional<Foundation::Uuid>& meant) {
        const FileTree folder{file.parent_path(), m_stop};
        const Lost* anchor = nullptr;
        for (const Lost& lost : m_lost) {
            if (meant && lost.photo->id == *meant)
                anchor = &lost;
        }
        if (anchor)
            assign(*anchor, file);
        else
            takeFrom(folder);
        for (const Lost& lost : m_lost) {
            if (const auto found = m_found.find(&lost); found != m_found.end() && found->second == file)
                takeMovedWith(movedFolder(lost.file.path, file));
        }
        takeFrom(folder);
    }

    void takeFolder(const fs::path& folder) { takeFrom(FileTree{folder, m_stop}); }

    [[nodiscard]] Refreshes found() const {
        Refreshes refreshes;
        for (const Lost& lost : m_lost) {
            const auto file = m_found.find(&lost);
            const std::optional<FilePhotoRef> ref =
                file == m_found.end() ? std::nullopt : refTo(file->second);
            if (ref)
                refreshes.push_back({lost.photo->id, lost.photo->source, *ref, false});
        }
        return refreshes;
    }

private:
    void assign(const Lost& lost, const fs::path& file) {
        m_found[&lost] = file;
        m_taken.insert(file);
    }
    [[nodiscard]] bool isOpen(const Lost& lost) const { return !m_found.contains(&lost); }

    void takeMovedWith(const MovedFolder& moved) {
        for (const Lost& lost : m_lost) {
            Foundation::throwIfStopped(m_stop);
            const fs::path below = lost.file.path.lexically_relative(moved.from);
            if (!isOpen(lost) || below.empty() || *below.begin() == "..")
                continue;
            const fs::path file = moved.to / below;
            // In the folder itself a name alone may be another camera's.
            const bool isBelowNamedFolder = std::distance(below.begin(), below.end()) > 1;
            if (isFile(file) && !m_taken.contains(file) && (isBelowNamedFolder || hasSize(file, lost.file)))
                assign(lost, file);
        }
    }

    void takeFrom(const FileTree& tree) {
        struct Claim {
            FileTree::Match match;
            std::vector<const Lost*> photos;
        };
        std::map<fs::path, Claim> claims;
        for (const Lost& lost : m_lost) {
            Foundation::throwIfStopped(m_stop);
            const std::optional<FileTree::Match> match = isOpen(lost) ? tree.find(lost.file) : std::nullopt;
            if (!match || m_taken.contains(match->file))
                continue;
            Claim& claim = claims[match->file];
            if (claim.photos.empty() || match->isSurerThan(claim.match))
                claim = {*match, {&lost}};
            else if (!claim.match.isSurerThan(*match))
                claim.photos.push_back(&lost);
        }
        for (const auto& [file, claim] : claims) {
            // Several photos may have been one and the same file, but no more than that.
            const bool isOne = std::ranges::all_of(claim.photos, [&](const Lost* lost) {
                return lost->file.path == claim.photos.front()->file.path;
            });
            for (const Lost* lost : claim.photos) {
                if (isOne)
                    assign(*lost, file);
            }
        }
    }

    std::stop_token m_stop;
    std::vector<Lost> m_lost;
    /// Of photos that are where they were, and of those found: no other photo's.
    std::set<fs::path> m_taken;
    std::map<const Lost*, fs::path> m_found;
};

} // namespace

Refreshes check(std::span<const PhotoItem> photos, const std::stop_token& stop) {
    // One for all, so that a tree is searched for moved files at most once.
    Foundation::BookmarkResolver resolver;
    Refreshes refreshes;
    for (const PhotoItem& photo : photos) {
        Foundation::throwIfStopped(stop);
        const auto* ref = std::get_if<FilePhotoRef>(&photo.source);
        if (!ref)
            continue;
        const std::optional<fs::path> path = resolver.resolvedFile(ref->bookmark);
        PhotoRefresh refresh{photo.id, photo.source, photo.source, !path || !isFile(*path)};
        if (!refresh.isMissing) {
            const std::optional<FilePhotoRef> present = refTo(*path);
            if (present && isOutdated(ref->bookmark, present->bookmark, *path))
                refresh.source = *present;
        }
        if (refresh.isMissing != photo.isMissing || !(refresh.source == photo.source))
            refreshes.push_back(std::move(refresh));
    }
    return refreshes;
}

Refreshes locate(std::span<const PhotoItem> photos, const fs::path& chosen,
                 const std::optional<Foundation::Uuid>& meant, const std::stop_token& stop) {
    std::error_code error;
    const fs::path path = fs::absolute(chosen, error).lexically_normal();
    Search search{photos, stop};
    if (fs::is_directory(path, error))
        search.takeFolder(path.has_filename() ? path : path.parent_path());
    else if (isFile(path))
        search.takeFile(path, meant);
    return search.found();
}

} // namespace Platform::PhotoFiles
