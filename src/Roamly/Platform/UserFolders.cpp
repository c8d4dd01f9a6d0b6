// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/UserFolders.h>

#include <QDir>
#include <cstdlib>

namespace Platform::UserFolders {

namespace {

std::filesystem::path base(const char* variable, const char* inHome) {
    if (const char* value = std::getenv(variable)) {
        if (std::filesystem::path path{value}; path.is_absolute())
            return path;
    }
    return std::filesystem::path{QDir::homePath().toStdString()} / inHome;
}

std::filesystem::path folder(const char* variable, const char* inHome) {
    return base(variable, inHome) / "app.roamly.Roamly";
}

} // namespace

std::filesystem::path caches() {
    return folder("XDG_CACHE_HOME", ".cache");
}

std::filesystem::path settings() {
    return folder("XDG_CONFIG_HOME", ".config");
}

std::filesystem::path state() {
    return folder("XDG_STATE_HOME", ".local/state");
}

std::filesystem::path sharedData() {
    return base("XDG_DATA_HOME", ".local/share");
}

} // namespace Platform::UserFolders
