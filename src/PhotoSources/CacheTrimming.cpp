// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/CacheTrimming.h>

#include <sys/stat.h>

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

namespace PhotoSources::CacheTrimming {

namespace {

struct CachedFile {
    std::filesystem::path path;
    std::int64_t bytes = 0;
    /// Seconds and nanoseconds.
    std::pair<std::int64_t, std::int64_t> modified;
};

std::vector<CachedFile> filesIn(const std::filesystem::path& folder) {
    std::vector<CachedFile> files;
    std::error_code error;
    std::filesystem::directory_iterator entry{folder, error};
    for (; !error && entry != std::filesystem::directory_iterator{}; entry.increment(error)) {
        struct stat status {};
        if (::lstat(entry->path().c_str(), &status) == 0 && S_ISREG(status.st_mode))
            files.push_back({entry->path(), status.st_size, {status.st_mtim.tv_sec, status.st_mtim.tv_nsec}});
    }
    return files;
}

} // namespace

void trim(const std::filesystem::path& folder, std::int64_t mostBytes, const Removal& remove) {
    std::vector<CachedFile> files = filesIn(folder);
    std::int64_t total = 0;
    for (const CachedFile& file : files)
        total += file.bytes;
    if (total <= mostBytes)
        return;
    std::ranges::stable_sort(files, {}, &CachedFile::modified);
    for (const CachedFile& file : files) {
        if (total <= mostBytes)
            return;
        if (remove(file.path))
            total -= file.bytes;
    }
}

bool removeFile(const std::filesystem::path& file) {
    std::error_code error;
    return std::filesystem::remove(file, error) && !error;
}

} // namespace PhotoSources::CacheTrimming
