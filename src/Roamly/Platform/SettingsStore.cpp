// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/SettingsStore.h>
#include <Roamly/Platform/UserFolders.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QSettings>
#include <QString>
#include <QStringList>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace Platform {

namespace {

constexpr std::string_view legacyOpenRouterKeyName = "openRouterKey";

QString qString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// What the file holds under a key. A text with commas that someone typed into the file without quotes comes
/// as a list and is put together again.
std::optional<std::string> storedText(const QSettings& file, std::string_view key) {
    const QVariant value = file.value(qString(key));
    if (!value.isValid())
        return std::nullopt;
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(", ").toStdString();
    return value.toString().toStdString();
}

/// Held while a process changes the settings, so that no other changes them between its reading and its
/// writing. The folder itself is locked: no file is left behind.
class FolderLock {
public:
    explicit FolderLock(const std::filesystem::path& folder)
        : m_descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        // Where the file system has no locks, the settings file's own write protection has to do.
        while (m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX) != 0 && errno == EINTR) {
        }
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock() {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

private:
    int m_descriptor;
};

[[noreturn]] void failToWrite(const std::filesystem::path& path, const std::string& reason) {
    throw SettingsStoreError("The settings file " + path.string() + " can’t be written: " + reason + ".");
}

/// Makes sure that the file exists and that only its owner may read it: an address in it may carry a
/// password.
void makePrivateFile(const std::filesystem::path& path) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0)
        failToWrite(path, std::strerror(errno));
    struct stat status {};
    if (::fstat(descriptor, &status) == 0 && (status.st_mode & 077) != 0)
        ::fchmod(descriptor, status.st_mode & 0700);
    ::close(descriptor);
}

} // namespace

std::filesystem::path SettingsStore::defaultPath() {
    return UserFolders::settings() / "settings.ini";
}

SettingsStore::SettingsStore(std::filesystem::path path)
    : m_path(std::move(path)) {}

Document::AppSettings SettingsStore::load() const {
    Document::AppSettings settings;
    const QSettings file{qString(m_path.string()), QSettings::IniFormat};
    for (const Document::Setting& setting : Document::settingsTable()) {
        if (const std::optional<std::string> text = storedText(file, setting.user.name))
            setting.user.assign(settings, *text);
    }
    return settings;
}

bool SettingsStore::set(const Document::Setting& setting, std::string_view text) {
    Document::AppSettings parsed;
    if (!setting.user.assign(parsed, text))
        return false;
    change(setting.user.name, setting.user.text(parsed));
    return true;
}

void SettingsStore::unset(const Document::Setting& setting) {
    if (std::filesystem::exists(m_path))
        change(setting.user.name, std::nullopt);
}

std::optional<std::string> SettingsStore::legacyOpenRouterKey() const {
    return storedText(QSettings{qString(m_path.string()), QSettings::IniFormat}, legacyOpenRouterKeyName);
}

void SettingsStore::removeLegacyOpenRouterKey() {
    change(legacyOpenRouterKeyName, std::nullopt);
}

void SettingsStore::change(std::string_view key, const std::optional<std::string>& text) {
    std::error_code error;
    const std::filesystem::path folder = m_path.parent_path();
    if (!std::filesystem::exists(folder, error)) {
        std::filesystem::create_directories(folder.parent_path(), error);
        if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
            failToWrite(m_path, std::strerror(errno));
    }
    const FolderLock lock{folder};
    makePrivateFile(m_path);
    QSettings file{qString(m_path.string()), QSettings::IniFormat};
    if (text)
        file.setValue(qString(key), qString(*text));
    else
        file.remove(qString(key));
    file.sync();
    if (file.status() == QSettings::FormatError)
        failToWrite(m_path, "it is not in the form of a settings file");
    if (file.status() != QSettings::NoError)
        failToWrite(m_path, "access was refused or the disk is full");
}

} // namespace Platform
