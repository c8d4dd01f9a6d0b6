// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bookmark.h>
#include <Foundation/BookmarkedFile.h>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Foundation {

namespace {

namespace fs = std::filesystem;

constexpr std::uint8_t recordMark = 0xFF;
constexpr std::uint8_t recordVersion = 1;
/// mark, version, kind, device, inode, size, path length
constexpr std::size_t headerLength = 3 + 3 * 8 + 4;
constexpr std::size_t maximumPathLength = 65536;

/// Enough for the photo trees of a lifetime; keeps a lost file in a huge tree from costing minutes.
constexpr std::size_t maximumEntriesPerTree = 200'000;
constexpr std::size_t maximumEntries = 500'000;

enum class Kind : std::uint8_t { File = 0, Folder = 1 };

struct Identity {
    Kind kind = Kind::File;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    /// 0 for folders, whose size says nothing.
    std::uint64_t size = 0;
};

struct Record {
    Identity identity;
    std::string path;
};

Identity identityOf(const struct stat& status) {
    const bool isFolder = S_ISDIR(status.st_mode);
    return {isFolder ? Kind::Folder : Kind::File, status.st_dev, status.st_ino,
            isFolder ? 0 : static_cast<std::uint64_t>(status.st_size)};
}

/// Of the entry itself: a symbolic link has an identity of its own.
std::optional<Identity> examine(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        return std::nullopt;
    return identityOf(status);
}

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Without "." and ".." and without a slash at the end.
fs::path normalised(const fs::path& path) {
    fs::path result = path.lexically_normal();
    if (!result.has_filename() && result.has_relative_path())
        result = result.parent_path();
    return result;
}

/// Absolute and normalised. Where a ".." follows a link, dropping both by the text alone would name another
/// file than the one the system opens; only then the folder's links are resolved.
std::optional<fs::path> standardised(const fs::path& path) {
    if (path.empty() || path.native().find('\0') != std::string::npos)
        return std::nullopt;
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    if (error)
        return std::nullopt;
    fs::path result = normalised(absolute);
    const bool hasDotDot = std::find(absolute.begin(), absolute.end(), "..") != absolute.end();
    if (!hasDotDot)
        return result;
    struct stat asGiven {};
    struct stat asText {};
    if (::stat(absolute.c_str(), &asGiven) != 0)
        return std::nullopt;
    if (::stat(result.c_str(), &asText) == 0 && asText.st_ino == asGiven.st_ino &&
        asText.st_dev == asGiven.st_dev)
        return result;
    result = fs::canonical(absolute, error);
    if (error)
        return std::nullopt;
    return result;
}

template <typename Number>
void append(Bytes& bytes, Number number) {
    for (std::size_t i = 0; i < sizeof number; ++i)
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
}

template <typename Number>
Number numberAt(const Bytes& bytes, std::size_t position) {
    Number number = 0;
    for (std::size_t i = 0; i < sizeof number; ++i)
        number |= static_cast<Number>(static_cast<Number>(bytes[position + i]) << (8 * i));
    return number;
}

Bytes encoded(const Record& record) {
    Bytes bytes{recordMark, recordVersion, static_cast<std::uint8_t>(record.identity.kind)};
    append(bytes, record.identity.device);
    append(bytes, record.identity.inode);
    append(bytes, record.identity.size);
    append(bytes, static_cast<std::uint32_t>(record.path.size()));
    bytes.insert(bytes.end(), record.path.begin(), record.path.end());
    return bytes;
}

std::optional<Record> decoded(const Bytes& bytes) {
    if (bytes.size() <= headerLength || bytes[0] != recordMark || bytes[1] != recordVersion || bytes[2] > 1)
        return std::nullopt;
    const std::size_t pathLength = numberAt<std::uint32_t>(bytes, headerLength - 4);
    if (pathLength > maximumPathLength || bytes.size() != headerLength + pathLength)
        return std::nullopt;
    Record record;
    record.identity.kind = static_cast<Kind>(bytes[2]);
    record.identity.device = numberAt<std::uint64_t>(bytes, 3);
    record.identity.inode = numberAt<std::uint64_t>(bytes, 11);
    record.identity.size = numberAt<std::uint64_t>(bytes, 19);
    record.path.assign(bytes.begin() + headerLength, bytes.end());
    if (record.path.front() != '/' || record.path.find('\0') != std::string::npos)
        return std::nullopt;
    return record;
}

std::string parentOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string_view nameOf(const std::string& path) {
    return std::string_view{path}.substr(path.rfind('/') + 1);
}

std::string joined(const std::string& folder, std::string_view name) {
    std::string path = folder;
    if (path.back() != '/')
        path += '/';
    path += name;
    return path;
}

/// What lies in the trees searched so far, by inode.
class TreeIndex {
public:
    /// Adds everything below the folder that is not here yet, nearest first, without leaving its file system.
    void add(const std::string& root) {
        if (m_folders.contains(root))
            return;
        struct stat status {};
        if (::stat(root.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
            return;
        const std::size_t limit = std::min(maximumEntries, m_entries.size() + maximumEntriesPerTree);
        // Hidden folders hold caches and histories by the hundred thousand: they come last.
        std::deque<std::string> visible{root};
        std::deque<std::string> hidden;
        while (m_entries.size() < limit && (!visible.empty() || !hidden.empty())) {
            std::deque<std::string>& queue = visible.empty() ? hidden : visible;
            const std::string folder = std::move(queue.front());
            queue.pop_front();
            addFolder(folder, status.st_dev, limit, visible, hidden);
        }
    }

    /// The best match: the same inode, kind and size, and the same device. Device numbers of removable and
    /// pooled file systems change between boots, so the same file name stands in for the device. Among
    /// several (hard links) the same name wins, then the path that sorts first.
    [[nodiscard]] std::optional<std::string> find(const Record& record) const {
        std::optional<std::string> best;
        bool bestHasName = false;
        const auto [begin, end] = m_entries.equal_range(record.identity.inode);
        for (auto it = begin; it != end; ++it) {
            const Entry& entry = it->second;
            const bool hasName = entry.name == nameOf(record.path);
            if (entry.identity.kind != record.identity.kind || entry.identity.size != record.identity.size ||
                (entry.identity.device != record.identity.device && !hasName))
                continue;
            std::string path = joined(*entry.folder, entry.name);
            if (!best || std::pair{!hasName, path} < std::pair{!bestHasName, *best}) {
                best = std::move(path);
                bestHasName = hasName;
            }
        }
        return best;
    }

private:
    struct Entry {
        /// Into `m_folders`, whose elements stay where they are.
        const std::string* folder = nullptr;
        std::string name;
        Identity identity;
    };

    static bool isTrash(std::string_view folder, std::string_view name) {
        return name.starts_with(".Trash") || (name == "Trash" && folder.ends_with("/.local/share"));
    }

    void addFolder(const std::string& path, dev_t device, std::size_t limit, std::deque<std::string>& visible,
                   std::deque<std::string>& hidden) {
        const std::string* const folder = &*m_folders.insert(path).first;
        const int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
        if (descriptor < 0)
            return;
        DIR* directory = ::fdopendir(descriptor);
        if (directory == nullptr) {
            ::close(descriptor);
            return;
        }
        while (m_entries.size() < limit) {
            const dirent* item = ::readdir(directory);
            if (item == nullptr)
                break;
            const std::string_view name{item->d_name};
            struct stat status {};
            if (name == "." || name == ".." ||
                ::fstatat(descriptor, item->d_name, &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0)
                continue;
            m_entries.emplace(status.st_ino, Entry{folder, std::string{name}, identityOf(status)});
            if (!S_ISDIR(status.st_mode) || status.st_dev != device || isTrash(path, name))
                continue;
            std::string subfolder = joined(path, name);
            // One that an earlier search entered is here already.
            if (!m_folders.contains(subfolder))
                (name.front() == '.' ? hidden : visible).push_back(std::move(subfolder));
        }
        ::closedir(directory);
    }

    /// Every folder that was read; each is read once.
    std::unordered_set<std::string> m_folders;
    std::unordered_multimap<std::uint64_t, Entry> m_entries;
};

/// True for folders too general to look for one photo in: the root, the folder of all homes and what is above
/// this user's home.
bool isTooGeneral(const std::string& folder) {
    if (folder == "/" || folder == "/home")
        return true;
    const char* home = std::getenv("HOME");
    return home != nullptr && std::string_view{home}.starts_with(folder + '/');
}

/// The folders to search for a lost file, nearest first: the nearest that still exists, then up to two above
/// it.
std::vector<std::string> treesFor(const std::string& path, bool isOccupied) {
    std::string folder = parentOf(path);
    while (!isFolder(folder))
        folder = parentOf(folder);
    std::vector<std::string> trees;
    // Where another file has taken the path, it is most often an edited version, saved anew: no reason to
    // look far.
    const std::size_t levels = isOccupied ? 2 : 3;
    for (std::size_t level = 0; level < levels && !isTooGeneral(folder); ++level) {
        const bool isTopLevel = parentOf(folder) == "/";
        if (isTopLevel && level == 2)
            break;
        trees.push_back(folder);
        folder = parentOf(folder);
    }
    return trees;
}

} // namespace

struct BookmarkResolver::State {
    std::mutex mutex;
    TreeIndex index;
};

BookmarkResolver::BookmarkResolver()
    : m_state(std::make_unique<State>()) {}
BookmarkResolver::~BookmarkResolver() = default;
BookmarkResolver::BookmarkResolver(BookmarkResolver&&) noexcept = default;
BookmarkResolver& BookmarkResolver::operator=(BookmarkResolver&&) noexcept = default;

std::optional<Bytes> makeBookmark(const fs::path& path) {
    const std::optional<fs::path> location = standardised(path);
    if (!location || location->native().size() > maximumPathLength)
        return std::nullopt;
    const std::optional<Identity> identity = examine(location->native());
    if (!identity)
        return std::nullopt;
    return encoded({*identity, location->native()});
}

std::optional<BookmarkedFile> readBookmark(const Bytes& bookmark) {
    if (const std::optional<Record> record = decoded(bookmark))
        return BookmarkedFile{
            record->path,
            BookmarkedFile::Identity{record->identity.device, record->identity.inode, record->identity.size}};
    const std::string_view text{reinterpret_cast<const char*>(bookmark.data()), bookmark.size()};
    if (!text.starts_with('/') || text.find('\0') != std::string_view::npos || !isValidUtf8(text))
        return std::nullopt;
    return BookmarkedFile{normalised(fs::path{text}), std::nullopt};
}

std::optional<fs::path> BookmarkResolver::resolve(const Bytes& bookmark) {
    const std::optional<Record> record = decoded(bookmark);
    if (!record)
        return std::nullopt;
    const std::optional<Identity> present = examine(record->path);
    // The device may have another number today; path and inode together are enough.
    if (present && present->inode == record->identity.inode && present->kind == record->identity.kind)
        return record->path;

    {
        const std::lock_guard lock{m_state->mutex};
        for (const std::string& tree : treesFor(record->path, present.has_value())) {
            m_state->index.add(tree);
            if (const std::optional<std::string> found = m_state->index.find(*record))
                return *found;
        }
    }
    // Editors save by writing a new file and giving it the old name.
    if (present && present->kind == record->identity.kind)
        return record->path;
    return std::nullopt;
}

std::optional<fs::path> BookmarkResolver::resolvedFile(const Bytes& bookmark) {
    if (!bookmark.empty() && bookmark.front() == recordMark)
        return resolve(bookmark);
    const std::string_view text{reinterpret_cast<const char*>(bookmark.data()), bookmark.size()};
    if (!isValidUtf8(text))
        return std::nullopt;
    std::optional<fs::path> path = standardised(fs::path{text});
    std::error_code error;
    if (!path || !fs::exists(*path, error))
        return std::nullopt;
    return path;
}

} // namespace Foundation
