// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Document/ProjectStore.h>
#include <Roamly/Platform/AppImageProvider.h>
#include <Roamly/Platform/MachineImport.h>
#include <Roamly/Platform/PhotoFiles.h>
#include <Roamly/Window/Shell/ProjectWindow.h>
#include <Roamly/Window/Shell/Windows.h>
#include <Support/TemporaryFolder.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QTest>
#include <atomic>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <vector>

/// A window over real files; what the user would choose in file dialogs is chosen beforehand, and what goes
/// to the desktop is noted.
class WindowFixture : public testing::Test {
protected:
    WindowFixture() {
        services.settings = [this] { return settings; };
        services.setSetting = [](const std::string&, const std::string&) { return std::nullopt; };
        services.engines.import = Platform::machineImport();
        services.engines.analyze = [this](const ProjectModel::Project& project, const Document::AppSettings&,
                                          const Jobs::AnalysisController::Progress& progress,
                                          const std::stop_token& stop) {
            progress({Analysis::PipelineProgress::Stage::clustering, 12, 40});
            while (holdsAnalysis && !stop.stop_requested())
                std::this_thread::yield();
            return project;
        };
        services.choosers.foldersToImport = [this](QWidget*, const Shell::FileChoosers::ManyChosen& chosen) {
            chosen(foldersToImport);
        };
        services.choosers.project = [this](QWidget*, const Shell::FileChoosers::OneChosen& chosen) {
            if (projectToOpen)
                chosen(*projectToOpen);
        };
        services.choosers.whereToSaveProject = [this](QWidget*, const QString& sentence,
                                                      const std::filesystem::path& proposed,
                                                      const Shell::FileChoosers::OneChosen& chosen) {
            saveSentence = sentence;
            savingProposed = proposed;
            if (whereToSave)
                chosen(*whereToSave);
        };
        services.choosers.music = [this](QWidget*, const Shell::FileChoosers::OneChosen& chosen) {
            if (music)
                chosen(*music);
        };
        services.recentProjects = [this] { return recent; };
        services.addRecentProject = [this](const std::filesystem::path& path) { recent.push_back(path); };
        services.recovery = [this](const Shell::ProjectPath& path) { return place(path); };
        services.notify = [this](const QString&, const QString& text) { notified = text; };
        services.keepAwake = [](const QString&) { return std::shared_ptr<void>{}; };
        services.showInFiles = [](const std::filesystem::path&) {};
        services.photo = [](const ProjectModel::PhotoRef& photo, int pixels) {
            return Platform::AppImageProvider{pixels}.image(photo);
        };
        services.showsDetails = [this] { return showsDetails; };
        services.setShowsDetails = [this](bool shows) { showsDetails = shows; };
        services.usesNativeDialogs = [] { return false; };
        services.setUsesNativeDialogs = [](bool) {};
        services.thumbnails =
            std::make_shared<Platform::ThumbnailProvider>(Platform::ThumbnailProvider::Options{
                .cacheDirectory = folder / "thumbnails", .libraryThumbnail = {}});
        services.checkPhotos = {.check = Platform::PhotoFiles::check, .locate = Platform::PhotoFiles::locate};
        services.choosers.folderOfMissing = [this](QWidget*, const Shell::FileChoosers::OneChosen& chosen) {
            if (folderOfMissing)
                chosen(*folderOfMissing);
        };
        services.choosers.movie = [](QWidget*, const QString&, const std::function<void(const QString&)>&) {};
        services.now = [] { return 0.0; };
    }

    [[nodiscard]] Shell::RecoveryPlace place(const Shell::ProjectPath& path) {
        return {.path = path,
                .write =
                    [this](const ProjectModel::Project& project, const auto& original) {
                        Document::ProjectStore::save(recovery, project);
                        recoveredFrom = original;
                    },
                .remove = [this] { std::filesystem::remove(recovery); }};
    }

    [[nodiscard]] static ProjectModel::Project projectOf(int photos) {
        ProjectModel::Project project;
        for (int number = 1; number <= photos; ++number)
            project.photos.push_back(TestPhotos::item(number));
        return project;
    }
    std::filesystem::path saved(const std::string& name, const ProjectModel::Project& project) const {
        Document::ProjectStore::save(folder / name, project);
        return folder / name;
    }

    template <typename Condition>
    static void waitFor(const Condition& condition) {
        ASSERT_TRUE(QTest::qWaitFor(condition, 20000));
    }
    static void waitUntilLoaded(Shell::ProjectWindow& window) {
        waitFor([&] { return window.flow().file().path().has_value(); });
    }
    static void leaveOutFirst(Shell::ProjectWindow& window) {
        const Foundation::Uuid id = window.document().project().photos[0].id;
        window.document().edit("Leave Out 1 Photo",
                               [&](ProjectModel::Project& project) { project.userSetSelection(false, id); });
    }

    /// The sheet that is open over the window.
    static QDialog* sheet(Shell::ProjectWindow& window) {
        for (QDialog* const dialog : window.findChildren<QDialog*>()) {
            if (dialog->isVisible())
                return dialog;
        }
        return nullptr;
    }
    /// Presses a button of the open sheet by its text.
    static void answer(Shell::ProjectWindow& window, const QString& text) {
        waitFor([&] { return sheet(window) != nullptr; });
        for (QAbstractButton* const button : sheet(window)->findChildren<QAbstractButton*>()) {
            if (QString{button->text()}.remove(QLatin1Char('&')) == text)
                return button->click();
        }
        FAIL() << "There is no button " << text.toStdString();
    }
    static bool shows(const QWidget& widget, const QString& text) {
        for (const QLabel* const label : widget.findChildren<QLabel*>()) {
            if (label->isVisible() && label->text().contains(text))
                return true;
        }
        return false;
    }

    TemporaryFolder folder;
    Document::AppSettings settings;
    Shell::WindowServices services;
    std::filesystem::path recovery = folder / "recovered.roamly";
    std::optional<std::filesystem::path> recoveredFrom;
    std::vector<std::filesystem::path> foldersToImport;
    std::vector<std::filesystem::path> recent;
    std::optional<std::filesystem::path> projectToOpen;
    std::optional<std::filesystem::path> whereToSave;
    std::optional<std::filesystem::path> music;
    std::optional<std::filesystem::path> folderOfMissing;
    std::filesystem::path savingProposed;
    QString saveSentence;
    QString notified;
    bool showsDetails = false;
    std::atomic<bool> holdsAnalysis = false;
};
