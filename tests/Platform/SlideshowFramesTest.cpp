// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/SlideshowFrames.h>
#include <Support/TestPhotos.h>
#include <Timeline/Playhead.h>
#include <Timeline/TimelineBuilder.h>

#include <gtest/gtest.h>

#include <QGuiApplication>

namespace {

TEST(SlideshowFramesTest, PhotosWhoseFilesAreNotThereAreListedAndTheFrameIsDrawnWithoutThem) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    char name[] = "tests";
    char* arguments[] = {name, nullptr};
    int count = 1;
    const QGuiApplication application{count, arguments};

    ProjectModel::Project project;
    project.photos = {TestPhotos::item(1), TestPhotos::item(2)};
    const Timeline::SlideshowTimeline timeline = Timeline::TimelineBuilder::build(project, {});
    const Timeline::Playhead playhead{timeline, 0.75};
    const auto frames = Platform::slideshowFrames(project, 1920);
    // In the middle of the dissolve both are asked for.
    const double dissolve = timeline.totalDuration / 2;
    EXPECT_NE(frames->frame(playhead.state(dissolve), {320, 180}), nullptr);
    EXPECT_EQ(frames->failedPhotoIDs(), (std::set{TestPhotos::uuid(1), TestPhotos::uuid(2)}));
}

} // namespace
