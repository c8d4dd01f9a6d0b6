// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ImageDecoder.h>
#include <Roamly/Platform/AnalysisEngine.h>
#include <Roamly/Platform/ProcessSetup.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace Platform {
namespace {

bool namesPeople(const std::vector<Captioning::ClassObservation>& observations) {
    return std::ranges::any_of(observations, [](const Captioning::ClassObservation& observation) {
        return (observation.identifier == "person" || observation.identifier == "people") &&
               observation.confidence >= 0.5F;
    });
}

TEST(VisionEngineTest, NamesNoPeopleWhereThereAreNone) {
    VisionEngine engine;
    Foundation::Image slope{320, 240, {}};
    for (int i = 0; i < 320 * 240; ++i)
        slope.pixels.insert(slope.pixels.end(), {static_cast<std::uint8_t>(i % 320 / 2), 90, 160});
    const auto observations = engine.classifier()(slope);
    ASSERT_TRUE(observations);
    EXPECT_FALSE(observations->empty());
    EXPECT_FALSE(namesPeople(*observations));
}

TEST(VisionEngineTest, NamesPeopleWhereItFindsFaces) {
    const char* folder = std::getenv("ROAMLY_TEST_PHOTOS");
    if (!folder)
        GTEST_SKIP() << "ROAMLY_TEST_PHOTOS is not set";
    preparePictures();
    VisionEngine engine;
    const auto classify = engine.classifier();
    int portraits = 0;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(folder) / "faces")) {
        const auto image = PhotoSources::ImageDecoder::decode(entry.path(), 1024);
        if (!image)
            continue;
        ++portraits;
        EXPECT_TRUE(namesPeople(classify(*image).value())) << entry.path();
    }
    EXPECT_GE(portraits, 10);
}

} // namespace
} // namespace Platform
