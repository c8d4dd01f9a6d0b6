// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/ProjectFile.h>
#include <Roamly/Document/SettingsTable.h>
#include <Roamly/Platform/AppImageProvider.h>
#include <Roamly/Platform/FileManager.h>
#include <Roamly/Platform/Notifications.h>
#include <Roamly/Platform/PhotoFiles.h>
#include <Roamly/Platform/RecentFiles.h>
#include <Roamly/Platform/RecoveryStore.h>
#include <Roamly/Platform/SettingsStore.h>
#include <Roamly/Platform/SleepInhibitor.h>
#include <Roamly/Platform/UserFolders.h>
#include <Roamly/Window/Shell/WindowServices.h>

#include <QDBusConnection>
#include <QSettings>
#include <chrono>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace Shell {

namespace {

double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

Foundation::Instant instantNow() {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

/// The settings as the file holds them, read only when it changed: windows look often, and commands may
/// change it meanwhile.
class KnownSettings {
public:
    [[nodiscard]] Document::AppSettings load() {
        std::error_code error;
        const auto written = std::filesystem::last_write_time(m_store.path(), error);
        if (!m_settings || written != m_written) {
            m_written = written;
            m_settings = m_store.load();
        }
        return *m_settings;
    }

private:
    Platform::SettingsStore m_store;
    std::filesystem::file_time_type m_written;
    std::optional<Document::AppSettings> m_settings;
};

const QString detailsShown = QStringLiteral("details");
const QString nativeDialogs = QStringLiteral("nativeFileDialogs");

/// What only the window knows of, beside the settings that commands share.
QSettings windowSettings() {
    return {QString::fromStdString((Platform::UserFolders::settings() / "window.ini").string()),
            QSettings::IniFormat};
}

std::optional<std::string> storeSetting(const std::string& name, const std::string& text) {
    const Document::Setting* const setting = Document::findUserSetting(name);
    if (setting == nullptr)
        return "There is no setting “" + name + "”.";
    try {
        Platform::SettingsStore store;
        if (text.empty())
            store.unset(*setting);
        else if (!store.set(*setting, text))
            return "“" + text + "” is no value for this setting.";
        return std::nullopt;
    } catch (const Platform::SettingsStoreError& error) {
        return error.what();
    }
}

Platform::RecoveryStore recoveryStore() {
    return Platform::RecoveryStore{Platform::UserFolders::state() / "recovery"};
}

/// A slot that is made when there is something to keep.
RecoveryPlace placeOf(std::optional<Platform::RecoverySlot> slot, const ProjectPath& path) {
    const bool holdsCopy = slot.has_value();
    const auto held = std::make_shared<std::optional<Platform::RecoverySlot>>(std::move(slot));
    return {.path = path,
            .write =
                [held](const ProjectModel::Project& project,
                       const std::optional<std::filesystem::path>& original) {
                    if (!*held)
                        *held = recoveryStore().newSlot();
                    (*held)->write(ProjectModel::encoded(project), original, instantNow());
                },
            .remove =
                [held] {
                    if (*held)
                        (*held)->remove();
                },
            .holdsCopy = holdsCopy};
}

} // namespace

WindowServices desktopServices() {
    WindowServices services;
    services.settings = [known = std::make_shared<KnownSettings>()] { return known->load(); };
    services.setSetting = storeSetting;
    services.engines = machineEngines();
    services.usesNativeDialogs = [] { return windowSettings().value(nativeDialogs, true).toBool(); };
    services.setUsesNativeDialogs = [](bool uses) { windowSettings().setValue(nativeDialogs, uses); };
    services.choosers = desktopFileChoosers(services.usesNativeDialogs());
    services.photo = [](const ProjectModel::PhotoRef& photo, int pixels) {
        return Platform::AppImageProvider{pixels}.image(photo);
    };
    services.showsDetails = [] { return windowSettings().value(detailsShown, false).toBool(); };
    services.setShowsDetails = [](bool shows) { windowSettings().setValue(detailsShown, shows); };
    services.thumbnails = Platform::ThumbnailProvider::shared();
    services.recentProjects = [] {
        return Platform::RecentFiles{Platform::RecentFiles::usualPlaces()}.list();
    };
    services.addRecentProject = [](const std::filesystem::path& project) {
        Platform::RecentFiles{Platform::RecentFiles::usualPlaces()}.add(project);
    };
    services.recovery = [](const ProjectPath& path) { return placeOf(std::nullopt, path); };
    const QDBusConnection bus = QDBusConnection::sessionBus();
    services.notify = [notifications = std::make_shared<Platform::Notifications>(bus)](const QString& title,
                                                                                       const QString& text) {
        notifications->show(title.toStdString(), text.toStdString());
    };
    services.keepAwake = [bus](const QString& reason) -> std::shared_ptr<void> {
        return std::make_shared<Platform::SleepInhibitor>(bus, reason.toStdString());
    };
    services.showInFiles = [files = Platform::FileManager{bus}](const std::filesystem::path& file) {
        files.show({file});
    };
    services.checkPhotos = {.check = Platform::PhotoFiles::check, .locate = Platform::PhotoFiles::locate};
    services.now = secondsNow;
    return services;
}

std::vector<LeftOver> leftOvers() {
    std::vector<LeftOver> found;
    for (const Platform::Recovery& recovery : recoveryStore().list()) {
        found.push_back({.original = recovery.original,
                         .written = recovery.written,
                         .copy = recovery.copy,
                         .take = [id = recovery.id](const ProjectPath& path) -> std::optional<RecoveryPlace> {
                             auto slot = recoveryStore().adopt(id);
                             if (!slot)
                                 return std::nullopt;
                             return placeOf(std::move(slot), path);
                         }});
    }
    return found;
}

} // namespace Shell
