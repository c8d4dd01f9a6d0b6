// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <PhotoSources/FolderWalk.h>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>

namespace PhotoSources {

namespace {

namespace fs = std::filesystem;

/// Deeper than any tree that people make; loops of mounted folders end here.
constexpr int maximumDepth = 128;

bool isPackage(std::string_view name) {
    constexpr std::array extensions = std::to_array<std::string_view>({
        "aplibrary",
        "app",
        "appex",
        "band",
        "bundle",
        "component",
        "fcpbundle",
        "framework",
        "garageband",
        "imovielibrary",
        "imovieproject",
        "kext",
        "key",
        "logicx",
        "migratedaplibrary",
        "migratedphotolibrary",
        "musiclibrary",
        "numbers",
        "pages",
        "photolibrary",
        "photoslibrary",
        "playground",
        "plugin",
        "prefpane",
        "rcproject",
        "rtfd",
        "screenflow",
        "theater",
        "tvlibrary",
        "workflow",
        "xcodeproj",
        "xcworkspace",
        "xpc",
        "lrdata",
        "lrlibrary",
        "dvdproj",
        "qlgenerator",
        "sparsebundle",
        "photoboothlibrary",
        "wdgt",
    });
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos)
        return false;
    const auto equalsIgnoringCase = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + 32 : a) == b; };
    const std::string_view extension = name.substr(dot + 1);
    return std::any_of(extensions.begin(), extensions.end(), [&](std::string_view known) {
        return std::equal(extension.begin(), extension.end(), known.begin(), known.end(), equalsIgnoringCase);
    });
}

enum class EntryKind { File, Folder, Other };

EntryKind kindOf(int folder, const dirent& entry) {
    if (entry.d_type == DT_REG)
        return EntryKind::File;
    if (entry.d_type == DT_DIR)
        return EntryKind::Folder;
    // Some file systems do not say.
    struct stat status {};
    if (entry.d_type != DT_UNKNOWN || ::fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return EntryKind::Other;
    if (S_ISDIR(status.st_mode))
        return EntryKind::Folder;
    return S_ISREG(status.st_mode) ? EntryKind::File : EntryKind::Other;
}

struct CloseDirectory {
    void operator()(DIR* directory) const { ::closedir(directory); }
};

struct FoundEntry {
    std::string name;
    bool isFolder = false;
};

std::vector<FoundEntry> visibleEntries(const fs::path& folder, const std::stop_token& stop) {
    std::vector<FoundEntry> entries;
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return entries;
    const std::unique_ptr<DIR, CloseDirectory> directory{::fdopendir(descriptor)};
    if (!directory) {
        ::close(descriptor);
        return entries;
    }
    while (const dirent* entry = ::readdir(directory.get())) {
        Foundation::throwIfStopped(stop);
        const std::string_view name{entry->d_name};
        if (name.starts_with('.'))
            continue;
        const EntryKind kind = kindOf(descriptor, *entry);
        if (kind == EntryKind::File || (kind == EntryKind::Folder && !isPackage(name)))
            entries.push_back({std::string{name}, kind == EntryKind::Folder});
    }
    std::sort(entries.begin(), entries.end(),
              [](const FoundEntry& a, const FoundEntry& b) { return a.name < b.name; });
    return entries;
}

void walk(const fs::path& folder, int depth, const std::stop_token& stop, std::vector<fs::path>& files) {
    for (const FoundEntry& entry : visibleEntries(folder, stop)) {
        if (!entry.isFolder)
            files.push_back(folder / entry.name);
        else if (depth < maximumDepth)
            walk(folder / entry.name, depth + 1, stop, files);
    }
}

} // namespace

std::vector<fs::path> filesBelow(const fs::path& folder, const std::stop_token& stop) {
    std::vector<fs::path> files;
    walk(folder, 0, stop, files);
    return files;
}

} // namespace PhotoSources
