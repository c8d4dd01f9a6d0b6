// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "WindowFixture.h"

#include <Roamly/Document/ProjectLock.h>
#include <Roamly/Window/Grid/DetailsPanel.h>
#include <Roamly/Window/Grid/Loupe.h>
#include <Roamly/Window/Grid/PhotoGridView.h>
#include <Roamly/Window/Shell/WindowCommands.h>

#include <QCloseEvent>
#include <QDir>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <memory>

using Shell::Intent;
using Shell::ProjectWindow;
using Shell::WorkKind;

namespace {

class ProjectWindowTest : public WindowFixture {
protected:
    /// A window that shows a project of three photos.
    std::unique_ptr<ProjectWindow> opened() {
        auto window = std::make_unique<ProjectWindow>(services);
        window->show();
        window->open(saved("Lisbon.roamly", projectOf(3)));
        waitUntilLoaded(*window);
        return window;
    }
    ProjectModel::Project onDisk() const {
        return Document::ProjectStore::load(folder / "Lisbon.roamly").project;
    }
    /// As soon as the window offers it.
    static void trigger(ProjectWindow& window, Intent intent) {
        waitFor([&] { return window.actions()[intent]->isEnabled(); });
        window.actions()[intent]->trigger();
    }
};

} // namespace

TEST_F(ProjectWindowTest, ANewProjectIsUntitledAndTellsHowToBegin) {
    ProjectWindow window{services};
    window.show();
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Untitled[*] — Roamly"));
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_TRUE(shows(window, QStringLiteral("No Photos Yet")));
    EXPECT_TRUE(shows(window, QStringLiteral("Import a folder or a photo-library album to get started.")));
}

TEST_F(ProjectWindowTest, ImportingAFolderFillsTheProjectAsOneStep) {
    TestPhotos::write(folder / "trip/1.jpg", {.date = "2024:05:01 10:00:00"});
    TestPhotos::write(folder / "trip/2.jpg", {.date = "2024:05:02 10:00:00"});
    foldersToImport = {folder / "trip"};
    ProjectWindow window{services};
    window.show();
    trigger(window, Intent::importFolder);
    waitFor([&] { return window.document().project().photos.size() == 2; });
    waitFor([&] { return shows(window, QStringLiteral("2 photos were imported.")); });
    waitFor([&] { return window.isWindowModified(); });
    EXPECT_TRUE(shows(window, QStringLiteral("2 of 2 photos selected")));
    trigger(window, Intent::undo);
    EXPECT_TRUE(window.document().project().photos.empty());
    EXPECT_FALSE(window.document().canUndo());
}

TEST_F(ProjectWindowTest, AFolderWithoutPhotosIsToldOf) {
    std::filesystem::create_directory(folder / "empty");
    foldersToImport = {folder / "empty"};
    ProjectWindow window{services};
    window.show();
    trigger(window, Intent::importFolder);
    waitFor([&] { return shows(window, QStringLiteral("No photos were found in “empty”.")); });
}

TEST_F(ProjectWindowTest, TheTitleNamesTheFileAndWhetherItIsSaved) {
    const auto window = opened();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Lisbon[*] — Roamly"));
    EXPECT_FALSE(window->isWindowModified());
    leaveOutFirst(*window);
    waitFor([&] { return window->isWindowModified(); });
    EXPECT_EQ(window->actions()[Intent::undo]->text(), QStringLiteral("&Undo Leave Out 1 Photo"));
    trigger(*window, Intent::save);
    waitFor([&] { return !window->isWindowModified(); });
    EXPECT_FALSE(onDisk().photos[0].isSelected);
    EXPECT_EQ(recent.back(), folder / "Lisbon.roamly");
    trigger(*window, Intent::undo);
    waitFor([&] { return window->isWindowModified(); });
}

TEST_F(ProjectWindowTest, SavingANewProjectAsksWhere) {
    ProjectWindow window{services};
    window.show();
    whereToSave = folder / "New.roamly";
    trigger(window, Intent::save);
    waitFor([&] { return window.windowTitle() == QStringLiteral("New[*] — Roamly"); });
    EXPECT_EQ(savingProposed, "Untitled.roamly");
    EXPECT_TRUE(std::filesystem::exists(folder / "New.roamly"));
}

TEST_F(ProjectWindowTest, AFileThatMayNotBeWrittenIsSavedElsewhere) {
    const auto window = opened();
    leaveOutFirst(*window);
    // A folder in its place stops also somebody whom no permission stops.
    std::filesystem::remove(folder / "Lisbon.roamly");
    std::filesystem::create_directory(folder / "Lisbon.roamly");
    whereToSave = folder / "Copy.roamly";
    trigger(*window, Intent::save);
    waitFor([&] { return window->windowTitle() == QStringLiteral("Copy[*] — Roamly"); });
    EXPECT_FALSE(saveSentence.isEmpty());
}

TEST_F(ProjectWindowTest, AFileOfANewerVersionIsRefusedWithASentence) {
    QFile file{QString::fromStdString((folder / "newer.roamly").string())};
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"photos":[],"schemaVersion":99,"settings":{},"sources":[],"usesManualOrder":false})");
    file.close();
    ProjectWindow window{services};
    window.show();
    window.open(folder / "newer.roamly");
    waitFor([&] { return sheet(window) != nullptr; });
    EXPECT_TRUE(shows(*sheet(window), QStringLiteral("newer")));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Untitled[*] — Roamly"));
    EXPECT_TRUE(window.flow().isUntouched());
}

TEST_F(ProjectWindowTest, ClosingWithUnsavedChangesAsks) {
    const auto window = opened();
    QSignalSpy closed{window.get(), &ProjectWindow::closed};
    leaveOutFirst(*window);
    window->close();
    answer(*window, QStringLiteral("Cancel"));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(closed.size(), 0);
    waitFor([&] { return sheet(*window) == nullptr; });

    window->close();
    answer(*window, QStringLiteral("Save"));
    waitFor([&] { return closed.size() == 1; });
    EXPECT_FALSE(onDisk().photos[0].isSelected);
}

TEST_F(ProjectWindowTest, ClosingWithoutSavingLeavesTheFileAsItWas) {
    const auto window = opened();
    QSignalSpy closed{window.get(), &ProjectWindow::closed};
    leaveOutFirst(*window);
    window->close();
    waitFor([&] { return sheet(*window) != nullptr; });
    QAbstractButton* discard = nullptr;
    for (QAbstractButton* const button : sheet(*window)->findChildren<QAbstractButton*>()) {
        if (button->text().contains(QStringLiteral("Discard")) ||
            button->text().contains(QStringLiteral("Don")))
            discard = button;
    }
    ASSERT_NE(discard, nullptr);
    discard->click();
    waitFor([&] { return closed.size() == 1; });
    EXPECT_TRUE(onDisk().photos[0].isSelected);
}

TEST_F(ProjectWindowTest, AnotherProgramsChangeIsReadWhereNothingIsLost) {
    const auto window = opened();
    (void)saved("Lisbon.roamly", projectOf(5));
    waitFor([&] { return window->document().project().photos.size() == 5; });
    EXPECT_TRUE(shows(*window, QStringLiteral("Another program changed “Lisbon”")));
    EXPECT_FALSE(window->isWindowModified());
}

TEST_F(ProjectWindowTest, WhereBothChangedItTheUserChooses) {
    const auto window = opened();
    leaveOutFirst(*window);
    (void)saved("Lisbon.roamly", projectOf(5));
    answer(*window, QStringLiteral("Keep Mine"));
    EXPECT_EQ(window->document().project().photos.size(), 3U);
    trigger(*window, Intent::save);
    waitFor([&] { return onDisk().photos.size() == 3; });
    EXPECT_FALSE(onDisk().photos[0].isSelected);

    waitFor([&] { return !window->isWindowModified() && sheet(*window) == nullptr; });
    leaveOutFirst(*window);
    trigger(*window, Intent::undo);
    leaveOutFirst(*window);
    trigger(*window, Intent::undo);
    trigger(*window, Intent::undo);
    (void)saved("Lisbon.roamly", projectOf(6));
    answer(*window, QStringLiteral("Load the File’s"));
    waitFor([&] { return window->document().project().photos.size() == 6; });
    EXPECT_FALSE(window->isWindowModified());
}

TEST_F(ProjectWindowTest, AFileThatAnotherProgramHoldsIsWaitedForWithoutHoldingUpTheUser) {
    const auto window = opened();
    leaveOutFirst(*window);
    auto held = std::make_unique<Document::ProjectLock>(folder / "Lisbon.roamly", Document::LockWait{});
    trigger(*window, Intent::save);
    waitFor([&] { return window->flow().file().state().isWaiting; });
    waitFor([&] { return shows(*window, QStringLiteral("Waiting for another program")); });
    held.reset();
    waitFor([&] { return !window->isWindowModified(); });
    EXPECT_FALSE(onDisk().photos[0].isSelected);
}

TEST_F(ProjectWindowTest, WhatIsUnsavedIsKeptForACrashAndGoneOnceItIsSaved) {
    const auto window = opened();
    leaveOutFirst(*window);
    waitFor([&] { return std::filesystem::exists(recovery); });
    waitFor([&] { return recoveredFrom == folder / "Lisbon.roamly"; });
    EXPECT_FALSE(Document::ProjectStore::load(recovery).project.photos[0].isSelected);
    trigger(*window, Intent::save);
    waitFor([&] { return !std::filesystem::exists(recovery); });
}

TEST_F(ProjectWindowTest, AnAnalysisShowsHowFarItIsWhileTheUserGoesOnAndLeavesItsIssues) {
    const auto window = opened();
    holdsAnalysis = true;
    trigger(*window, Intent::analyze);
    waitFor([&] { return shows(*window, QStringLiteral("Finding duplicates… 12/40")); });
    EXPECT_FALSE(window->actions()[Intent::analyze]->isEnabled());
    EXPECT_EQ(window->actions()[Intent::analyze]->toolTip(),
              QStringLiteral("The photos are being analyzed already"));
    leaveOutFirst(*window);
    holdsAnalysis = false;
    waitFor([&] { return !window->work().isRunning(WorkKind::analysis); });
    waitFor([&] { return shows(*window, QStringLiteral("3 photos have no GPS location data.")); });
    EXPECT_FALSE(window->document().project().photos[0].isSelected);
}

TEST_F(ProjectWindowTest, ACancelledAnalysisIsGoneAtOnce) {
    const auto window = opened();
    holdsAnalysis = true;
    trigger(*window, Intent::analyze);
    waitFor([&] { return shows(*window, QStringLiteral("Finding duplicates… 12/40")); });
    window->work().cancel(WorkKind::analysis);
    waitFor([&] { return !shows(*window, QStringLiteral("Finding duplicates")); });
    EXPECT_FALSE(window->document().canUndo());
}

TEST_F(ProjectWindowTest, CaptionsThatAreOffSayWhere) {
    settings.aiCaptionsEnabled = false;
    const auto window = opened();
    waitFor([&] { return !window->actions()[Intent::generateCaptions]->toolTip().isEmpty(); });
    EXPECT_FALSE(window->actions()[Intent::generateCaptions]->isEnabled());
    EXPECT_EQ(window->actions()[Intent::generateCaptions]->toolTip(),
              QStringLiteral("Turn on “Generate captions with AI” in Project Settings first"));
}

TEST_F(ProjectWindowTest, TheCloudProviderIsUsedOnlyAfterAYesAndIsToldOfMeanwhile) {
    const auto window = opened();
    const auto ownProvider = [&] { return window->document().project().settings.aiProvider; };
    auto* const commands = window->findChild<Shell::WindowCommands*>();
    ASSERT_NE(commands, nullptr);
    const QString banner = QStringLiteral("Privacy alert — Photos are sent to OpenRouter (cloud)");

    commands->chooseProvider(ProjectModel::AIProvider::openRouter);
    answer(*window, QStringLiteral("Cancel"));
    EXPECT_FALSE(ownProvider());
    waitFor([&] { return sheet(*window) == nullptr; });
    EXPECT_FALSE(shows(*window, banner));

    commands->chooseProvider(ProjectModel::AIProvider::openRouter);
    answer(*window, QStringLiteral("Use OpenRouter (cloud)"));
    waitFor([&] { return shows(*window, banner); });
    EXPECT_EQ(ownProvider(), ProjectModel::AIProvider::openRouter);

    commands->chooseProvider(ProjectModel::AIProvider::ollama);
    waitFor([&] { return !shows(*window, banner); });
    EXPECT_EQ(ownProvider(), ProjectModel::AIProvider::ollama);
}

TEST_F(ProjectWindowTest, MissingPhotosAreListedAndFoundAgainWithoutAStep) {
    TestPhotos::write(folder / "trip/1.jpg", {.date = "2024:05:01 10:00:00"});
    TestPhotos::write(folder / "trip/2.jpg", {.date = "2024:05:02 10:00:00"});
    foldersToImport = {folder / "trip"};
    whereToSave = folder / "Lisbon.roamly";
    {
        ProjectWindow window{services};
        window.show();
        trigger(window, Intent::importFolder);
        waitFor([&] { return window.document().project().photos.size() == 2; });
        trigger(window, Intent::save);
        waitFor([&] { return std::filesystem::exists(folder / "Lisbon.roamly"); });
        waitFor([&] { return !window.isWindowModified(); });
    }
    // Away from where a search would look.
    const TemporaryFolder elsewhere;
    std::filesystem::copy(folder / "trip", elsewhere / "moved");
    std::filesystem::remove_all(folder / "trip");

    ProjectWindow window{services};
    window.show();
    window.open(folder / "Lisbon.roamly");
    waitFor([&] { return shows(window, QStringLiteral("2 photos are missing")); });
    EXPECT_FALSE(window.isWindowModified());
    folderOfMissing = elsewhere / "moved";
    trigger(window, Intent::locateMissing);
    waitFor([&] { return shows(window, QStringLiteral("2 photos were found again.")); });
    waitFor([&] { return !shows(window, QStringLiteral("2 photos are missing")); });
    EXPECT_FALSE(window.document().canUndo());
    EXPECT_FALSE(window.isWindowModified());
}

TEST_F(ProjectWindowTest, EachSheetOpensFromItsAction) {
    const auto window = opened();
    const std::pair<Intent, const char*> sheets[] = {
        {Intent::exportMovie, "Export Slideshow"},
        {Intent::captionPrompt, "AI Caption Prompt"},
        {Intent::projectSettings, "Project Settings"},
        {Intent::importAlbum, "Choose an Album"},
    };
    for (const auto& [intent, name] : sheets) {
        trigger(*window, intent);
        waitFor([&] { return sheet(*window) != nullptr; });
        EXPECT_EQ(sheet(*window)->windowTitle().toStdString(), name);
        sheet(*window)->close();
        waitFor([&] { return sheet(*window) == nullptr; });
    }
}

TEST_F(ProjectWindowTest, OneWindowShowsEachProject) {
    const auto lisbon = saved("Lisbon.roamly", projectOf(3));
    const auto rome = saved("Rome.roamly", projectOf(2));
    Shell::Windows windows{services};
    ProjectWindow& empty = windows.openNew();
    ProjectWindow& first = windows.open(lisbon);
    EXPECT_EQ(&first, &empty);
    EXPECT_EQ(&windows.open(lisbon), &first);
    waitUntilLoaded(first);
    ProjectWindow& second = windows.open(rome);
    EXPECT_NE(&second, &first);
    waitUntilLoaded(second);
    std::filesystem::create_symlink(rome, folder / "link.roamly");
    EXPECT_EQ(&windows.open(folder / "link.roamly"), &second);
    EXPECT_EQ(windows.all().size(), 2U);

    QSignalSpy allClosed{&windows, &Shell::Windows::allClosed};
    windows.quit();
    waitFor([&] { return allClosed.size() == 1; });
    EXPECT_TRUE(windows.all().empty());
}

TEST_F(ProjectWindowTest, WhatACrashLeftComesBackUnsavedUnderItsName) {
    const auto lisbon = saved("Lisbon.roamly", projectOf(3));
    ProjectModel::Project unsaved = projectOf(3);
    unsaved.photos[1].isSelected = false;
    Document::ProjectStore::save(recovery, unsaved);
    Shell::Windows windows{services};
    (void)windows.openNew();
    windows.offer({{.original = lisbon,
                    .written = {},
                    .copy = recovery,
                    .take = [this](const Shell::ProjectPath& path) {
                        Shell::RecoveryPlace kept = place(path);
                        kept.holdsCopy = true;
                        return std::optional{kept};
                    }}});
    answer(*windows.all().front(), QStringLiteral("Recover"));
    waitFor([&] { return windows.all().size() == 2; });
    ProjectWindow& window = *windows.all().back();
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Lisbon[*] — Roamly"));
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_EQ(window.document().project(), unsaved);
    EXPECT_TRUE(std::filesystem::exists(recovery));
    trigger(window, Intent::save);
    waitFor([&] { return !std::filesystem::exists(recovery); });
    EXPECT_FALSE(onDisk().photos[1].isSelected);
}

TEST_F(ProjectWindowTest, ItIsPhotographed) {
    const QString shots = qEnvironmentVariable("ROAMLY_SHOTS");
    if (shots.isEmpty())
        GTEST_SKIP() << "ROAMLY_SHOTS names no folder";
    QDir{}.mkpath(shots);
    recent = {"/home/ann/Pictures/Lisbon 2024.roamly", "/home/ann/Pictures/京都の旅行.roamly"};
    ProjectWindow empty{services};
    empty.show();
    empty.grab().save(shots + QStringLiteral("/empty.png"));
    const auto window = opened();
    holdsAnalysis = true;
    trigger(*window, Intent::analyze);
    waitFor([&] { return shows(*window, QStringLiteral("Finding duplicates… 12/40")); });
    window->notice(QStringLiteral("2 photos were imported.\nNo photos were found in “empty”."));
    window->grab().save(shots + QStringLiteral("/working.png"));
    window->resize(1024, 640);
    QTest::qWait(1);
    window->grab().save(shots + QStringLiteral("/smallest.png"));
    holdsAnalysis = false;
    waitFor([&] { return !window->work().isRunning(WorkKind::analysis); });
    window->grab().save(shots + QStringLiteral("/issues.png"));
}

TEST_F(ProjectWindowTest, DetailsAreShownAsTheyWereLeft) {
    {
        const auto window = opened();
        auto* const details = window->findChild<Grid::DetailsPanel*>();
        ASSERT_NE(details, nullptr);
        EXPECT_TRUE(details->isHidden());
        trigger(*window, Intent::details);
        EXPECT_TRUE(details->isVisible());
    }
    const auto again = opened();
    EXPECT_TRUE(again->findChild<Grid::DetailsPanel*>()->isVisible());
    EXPECT_TRUE(again->actions()[Intent::details]->isChecked());
}

TEST_F(ProjectWindowTest, SavingTakesTheCaptionThatIsBeingTyped) {
    showsDetails = true;
    const auto window = opened();
    window->findChild<Grid::PhotoGridView*>()->goTo(window->document().project().photos[1].id);
    auto* const caption = window->findChild<QPlainTextEdit*>();
    ASSERT_NE(caption, nullptr);
    caption->setFocus();
    QTest::keyClicks(caption, "Tram 28");
    window->actions()[Intent::save]->setEnabled(true);
    window->actions()[Intent::save]->trigger();
    waitFor([&] { return onDisk().photos[1].caption == "Tram 28"; });
}

TEST_F(ProjectWindowTest, TheMenuOpensTheChosenPhoto) {
    const auto window = opened();
    const Foundation::Uuid photo = window->document().project().photos[1].id;
    window->findChild<Grid::PhotoGridView*>()->goTo(photo);
    trigger(*window, Intent::openPhoto);
    auto* const loupe = window->findChild<Grid::Loupe*>();
    ASSERT_TRUE(loupe->isVisible());
    EXPECT_EQ(loupe->current(), photo);
}
