// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Roamly/Platform/DesktopNames.h>
#include <Roamly/Platform/FileUri.h>
#include <Roamly/Platform/RecentFiles.h>
#include <Roamly/Platform/UserFolders.h>

#include <glib.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>
#include <utility>

namespace Platform {

namespace {

namespace fs = std::filesystem;

struct Free {
    void operator()(GBookmarkFile* bookmarks) const { g_bookmark_file_free(bookmarks); }
};
using Bookmarks = std::unique_ptr<GBookmarkFile, Free>;

std::vector<fs::path> readOwnList(const fs::path& file) {
    std::vector<fs::path> files;
    try {
        std::istringstream lines{Foundation::readFile(file)};
        for (std::string line; std::getline(lines, line);) {
            if (std::optional<fs::path> path = pathOfFileUri(line))
                files.push_back(std::move(*path));
        }
    } catch (const std::system_error&) {
        // The first start.
    }
    return files;
}

void replace(const fs::path& file, const std::string& contents) {
    try {
        fs::create_directories(file.parent_path());
        const bool isNew = !fs::exists(file);
        Foundation::writeFileAtomically(file, contents);
        if (isNew)
            fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    } catch (const std::system_error&) {
        // A list of what was opened is a comfort, no more.
    }
}

void writeOwnList(const fs::path& file, const std::vector<fs::path>& files) {
    std::string lines;
    for (const fs::path& path : files)
        lines += fileUri(path) + "\n";
    replace(file, lines);
}

/// Changes the desktop's list, keeping the entries of others.
void changeDesktopList(const fs::path& file, const std::function<void(GBookmarkFile*)>& change) {
    const Bookmarks bookmarks{g_bookmark_file_new()};
    std::error_code error;
    if (fs::exists(file, error) && !g_bookmark_file_load_from_file(bookmarks.get(), file.c_str(), nullptr))
        return;
    change(bookmarks.get());
    gsize length = 0;
    const std::unique_ptr<gchar, decltype(&g_free)> text{
        g_bookmark_file_to_data(bookmarks.get(), &length, nullptr), g_free};
    if (text)
        replace(file, std::string{text.get(), length});
}

} // namespace

RecentFiles::Places RecentFiles::usualPlaces() {
    return {UserFolders::state() / "recent-projects", UserFolders::sharedData() / "recently-used.xbel"};
}

RecentFiles::RecentFiles(Places places)
    : m_places(std::move(places)) {}

std::vector<fs::path> RecentFiles::list() const {
    std::vector<fs::path> files = readOwnList(m_places.ownList);
    std::erase_if(files, [](const fs::path& file) {
        std::error_code error;
        return !fs::is_regular_file(file, error);
    });
    return files;
}

void RecentFiles::add(const fs::path& given) {
    std::error_code error;
    const fs::path file = fs::absolute(given, error).lexically_normal();
    if (error)
        return;
    // Missing ones stay in the file: a drive that is away comes back.
    std::vector<fs::path> files = readOwnList(m_places.ownList);
    std::erase(files, file);
    files.insert(files.begin(), file);
    files.resize(std::min(files.size(), mostFiles));
    writeOwnList(m_places.ownList, files);

    changeDesktopList(m_places.desktopList, [uri = fileUri(file)](GBookmarkFile* bookmarks) {
        g_bookmark_file_set_mime_type(bookmarks, uri.c_str(), DesktopNames::projectMimeType);
        g_bookmark_file_add_application(bookmarks, uri.c_str(), DesktopNames::program,
                                        DesktopNames::openCommand);
    });
}

void RecentFiles::clear() {
    const std::vector<fs::path> files = readOwnList(m_places.ownList);
    writeOwnList(m_places.ownList, {});
    changeDesktopList(m_places.desktopList, [&files](GBookmarkFile* bookmarks) {
        for (const fs::path& file : files) {
            const std::string uri = fileUri(file);
            g_bookmark_file_remove_application(bookmarks, uri.c_str(), DesktopNames::program, nullptr);
            gsize others = 0;
            g_strfreev(g_bookmark_file_get_applications(bookmarks, uri.c_str(), &others, nullptr));
            if (others == 0)
                g_bookmark_file_remove_item(bookmarks, uri.c_str(), nullptr);
        }
    });
}

} // namespace Platform
