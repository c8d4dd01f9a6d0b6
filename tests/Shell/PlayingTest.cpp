// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "WindowFixture.h"

#include <Roamly/Platform/SlideshowFrames.h>
#include <Roamly/Window/Stage/PlayerWindow.h>

#include <QSignalSpy>
#include <fstream>

namespace {

class PlayingTest : public WindowFixture {
protected:
    PlayingTest() {
        services.engines.frames = Platform::slideshowFrames;
        project = projectOf(0);
        for (int number = 1; number <= 3; ++number)
            project.photos.push_back(TestPhotos::item(
                number, TestPhotos::write(folder / ("photo" + std::to_string(number) + ".jpg"),
                                          {.width = 160, .height = 90, .colour = 0xC02020})));
    }

    static Stage::PlayerWindow* player() {
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (auto* const window = qobject_cast<Stage::PlayerWindow*>(widget))
                return window;
        }
        return nullptr;
    }

    ProjectModel::Project project;
};

} // namespace

TEST_F(PlayingTest, PlayShowsTheFilmOverItsWindow) {
    Shell::Windows windows{services};
    Shell::ProjectWindow& window = windows.open(saved("Lisbon.roamly", project));
    waitUntilLoaded(window);
    waitFor([&] { return window.actions()[Shell::Intent::play]->isEnabled(); });
    window.actions()[Shell::Intent::play]->trigger();
    ASSERT_TRUE(player());
    EXPECT_TRUE(player()->isFullScreen());
    waitFor([] { return player()->model().isPlaying(); });
    const QImage& picture = player()->picture();
    const QColor middle = picture.pixelColor(picture.width() / 2, picture.height() / 2);
    EXPECT_GT(middle.red(), 150);
    EXPECT_LT(middle.green(), 80);

    QTest::keyClick(player(), Qt::Key_Escape);
    waitFor([] { return player() == nullptr; });
    EXPECT_EQ(windows.all().size(), 1U);
}

TEST_F(PlayingTest, AProjectCanBePlayedWithoutAWindowOfItsOwn) {
    Shell::Windows windows{services};
    QSignalSpy closed(&windows, &Shell::Windows::allClosed);
    windows.carryOut(
        Shell::PlayProject{.project = saved("Lisbon.roamly", project), .from = 2, .inWindow = true});
    EXPECT_TRUE(windows.all().empty());
    ASSERT_TRUE(player());
    EXPECT_FALSE(player()->isFullScreen());
    EXPECT_EQ(player()->model().elapsed(), 2);
    waitFor([] { return player()->model().isPlaying(); });
    EXPECT_EQ(closed.count(), 0);
    player()->close();
    waitFor([&] { return closed.count() == 1; });
}

TEST_F(PlayingTest, AFileThatIsNoProjectIsToldOfByAWindow) {
    Shell::Windows windows{services};
    const std::filesystem::path file = folder / "Broken.roamly";
    std::ofstream{file} << "no project";
    windows.carryOut(Shell::PlayProject{.project = file, .from = 0, .inWindow = true});
    EXPECT_FALSE(player());
    ASSERT_EQ(windows.all().size(), 1U);
    waitFor([&] { return sheet(*windows.all().front()) != nullptr; });
}
