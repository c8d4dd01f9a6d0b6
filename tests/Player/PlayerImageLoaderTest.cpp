// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Player/PlayerImageLoader.h>
#include <Support/TestPhotos.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace Player;
using testing::ElementsAre;
using TestPhotos::uuid;

class PlayerImageLoaderTest : public testing::Test {
protected:
    static ProjectModel::Project project() {
        ProjectModel::Project result;
        for (int i = 1; i <= 12; ++i)
            result.photos.push_back(TestPhotos::item(i, "/photos/" + std::to_string(i)));
        return result;
    }
    PlayerImageLoader::Provider provider() {
        return [this](const ProjectModel::PhotoRef& ref) -> std::optional<Foundation::Image> {
            const std::string name = std::get<ProjectModel::FilePhotoRef>(ref).displayName;
            decoded.push_back(name);
            if (name == "12")
                return std::nullopt;
            return Foundation::Image{1, 1, {1, 2, 3}};
        };
    }

    std::vector<std::string> decoded;
    PlayerImageLoader loader{project(), provider()};
};

TEST_F(PlayerImageLoaderTest, DecodesAPhotoOnce) {
    EXPECT_NE(loader.image(uuid(1)), nullptr);
    EXPECT_NE(loader.image(uuid(1)), nullptr);
    EXPECT_THAT(decoded, ElementsAre("1"));
}

TEST_F(PlayerImageLoaderTest, APhotoThatIsUnknownOrCannotBeDecodedIsNothing) {
    EXPECT_EQ(loader.image(uuid(99)), nullptr);
    EXPECT_EQ(loader.image(uuid(12)), nullptr);
    EXPECT_FALSE(loader.holds(uuid(12)));
}

TEST_F(PlayerImageLoaderTest, ANinthPhotoPutsOutTheLeastRecentlyUsedOne) {
    for (int i = 1; i <= 9; ++i)
        (void)loader.image(uuid(i));
    EXPECT_FALSE(loader.holds(uuid(1)));
    for (int i = 2; i <= 9; ++i)
        EXPECT_TRUE(loader.holds(uuid(i))) << i;
}

TEST_F(PlayerImageLoaderTest, TouchingAPhotoProtectsItFromTheNextEviction) {
    for (int i = 1; i <= 8; ++i)
        (void)loader.image(uuid(i));
    loader.touch(uuid(1));
    (void)loader.image(uuid(9));
    EXPECT_TRUE(loader.holds(uuid(1)));
    EXPECT_FALSE(loader.holds(uuid(2)));
}

TEST_F(PlayerImageLoaderTest, TwoThatAskAtTheSameTimeShareOneDecoding) {
    std::atomic<int> decodings = 0;
    std::latch bothAsk{2};
    PlayerImageLoader shared{project(), [&](const ProjectModel::PhotoRef&) {
                                 ++decodings;
                                 return std::optional{Foundation::Image{1, 1, {1, 2, 3}}};
                             }};
    const auto ask = [&] {
        bothAsk.arrive_and_wait();
        EXPECT_NE(shared.image(uuid(1)), nullptr);
    };
    {
        const std::jthread first{ask};
        const std::jthread second{ask};
    }
    EXPECT_EQ(decodings, 1);
}

} // namespace
