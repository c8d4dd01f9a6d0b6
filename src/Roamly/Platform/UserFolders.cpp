#include <Roamly/Platform/UserFolders.h>

#include <QDir>
#include <cstdlib>

namespace Platform::UserFolders {

namespace {

std::filesystem::path folder(const char* variable, const char* inHome) {
    if (const char* value = std::getenv(variable)) {
        if (std::filesystem::path base{value}; base.is_absolute())
            return base / "app.roamly.Roamly";
    }
    return std::filesystem::path{QDir::homePath().toStdString()} / inHome / "app.roamly.Roamly";
}

} // namespace

std::filesystem::path caches() {
    return folder("XDG_CACHE_HOME", ".cache");
}

std::filesystem::path settings() {
    return folder("XDG_CONFIG_HOME", ".config");
}

} // namespace Platform::UserFolders
