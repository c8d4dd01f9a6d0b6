#include <Roamly/Platform/SettingsStore.h>
#include <Roamly/Window/Shell/WindowServices.h>

#include <QDesktopServices>
#include <QUrl>
#include <chrono>

namespace Shell {

namespace {

double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

WindowServices desktopServices() {
    return {
        .settings = [] { return Platform::SettingsStore{}.load(); },
        .engines = machineEngines(),
        .choosers = desktopFileChoosers(true),
        .recentProjects = [] { return std::vector<std::filesystem::path>{}; },
        .addRecentProject = [](const std::filesystem::path&) {},
        .recovery =
            [](const std::function<std::optional<std::filesystem::path>()>&) {
                return RecoveryPlace{[](const ProjectModel::Project&) {}, [] {}};
            },
        .notify = [](const QString&, const QString&) {},
        .keepAwake = [](const QString&) { return std::shared_ptr<void>{}; },
        .showInFiles =
            [](const std::filesystem::path& file) {
                QDesktopServices::openUrl(
                    QUrl::fromLocalFile(QString::fromStdString(file.parent_path().string())));
            },
        .now = secondsNow,
    };
}

} // namespace Shell
