// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Over real photos, where there are some: ROAMLY_TEST_PHOTOS names a folder with a manifest.json that says
// what each of them shows.
#include "PaintedPhotos.h"
#include "VisionFiles.h"

#include <Analysis/Aesthetics.h>
#include <Analysis/BestShotSelector.h>
#include <Analysis/SharpnessScorer.h>
#include <Analysis/VisionClassifier.h>
#include <Analysis/VisionFeaturePrinter.h>
#include <PhotoSources/ImageDecoder.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

namespace Analysis {
namespace {

using Foundation::Image;
using nlohmann::json;

class RealPhotosTest : public testing::Test {
protected:
    void SetUp() override {
        const char* folder = std::getenv("ROAMLY_TEST_PHOTOS");
        if (!folder)
            GTEST_SKIP() << "ROAMLY_TEST_PHOTOS is not set";
        m_folder = folder;
        items = json::parse(std::ifstream(m_folder / "manifest.json")).at("items");
    }

    [[nodiscard]] std::optional<Image> decoded(const json& item) const {
        return PhotoSources::ImageDecoder::decode(m_folder / item.at("file").get<std::string>(), 1024);
    }
    [[nodiscard]] static bool isIn(const json& item, const std::set<std::string>& folders) {
        const auto file = item.at("file").get<std::string>();
        return folders.contains(file.substr(0, file.find('/')));
    }
    [[nodiscard]] static std::string label(const json& item, const char* name) {
        return item.value("labels", json::object()).value(name, "");
    }

    json items;

private:
    std::filesystem::path m_folder;
};

TEST_F(RealPhotosTest, PartsBurstsFromOtherPhotosAtOneHalf) {
    struct Print {
        std::string burst;
        std::string scene;
        std::vector<float> features;
    };
    VisionFeaturePrinter printer(sharedNetwork());
    std::vector<Print> prints;
    for (const json& item : items) {
        // A file that was turned by a quarter is no shot of a burst.
        if (!isIn(item, {"bursts", "trip_us2015", "scenes"}) ||
            item.at("file").get<std::string>().find("rotation") != std::string::npos)
            continue;
        if (const auto image = decoded(item))
            prints.push_back(
                {label(item, "burst"), label(item, "scene_group"), printer.features(*image).value()});
    }
    ASSERT_GT(prints.size(), 30U);

    int same = 0;
    int sameFound = 0;
    int falselyFound = 0;
    for (std::size_t i = 0; i < prints.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            double squares = 0;
            for (std::size_t k = 0; k < prints[i].features.size(); ++k)
                squares += std::pow(prints[i].features[k] - prints[j].features[k], 2);
            const bool isFound = std::sqrt(squares) < 0.5;
            if (!prints[i].burst.empty() && prints[i].burst == prints[j].burst) {
                ++same;
                sameFound += isFound;
            } else if (prints[i].scene.empty() || prints[i].scene != prints[j].scene) {
                falselyFound += isFound;
            }
        }
    }
    EXPECT_GE(same, 5);
    EXPECT_EQ(sameFound, same);
    EXPECT_EQ(falselyFound, 0);
}

TEST_F(RealPhotosTest, FindsTheFaceInPortraitsAndNoneInLandscapes) {
    int portraits = 0;
    for (const json& item : items) {
        const bool isPortrait = isIn(item, {"faces"});
        if (!isPortrait && !isIn(item, {"trip_us2015", "geo_europe"}))
            continue;
        const auto image = decoded(item);
        if (!image)
            continue;
        portraits += isPortrait;
        const auto faces = sharedFaceFinder().faces(*image);
        EXPECT_EQ(faces.size(), isPortrait ? 1U : 0U) << item.at("file");
        for (const Face& face : faces)
            EXPECT_TRUE(sharedFaceFinder().showsLeftEye(*image, face)) << item.at("file");
    }
    EXPECT_GE(portraits, 10);
}

TEST_F(RealPhotosTest, NamesWhatPhotosShow) {
    // What a photo shows by the manifest, and words that say so.
    const std::map<std::string, std::set<std::string>> words{{"squirrel", {"squirrel", "marmot", "animal"}},
                                                             {"bear", {"bear", "animal"}},
                                                             {"fox", {"fox"}},
                                                             {"dog", {"dog"}},
                                                             {"cat", {"cat"}},
                                                             {"bird", {"bird", "animal"}},
                                                             {"lighthouse", {"lighthouse"}},
                                                             {"sailboat", {"sailboat"}},
                                                             {"coffee", {"coffee"}},
                                                             {"car", {"car", "vehicle"}},
                                                             {"beach", {"beach", "sea"}},
                                                             {"mountain", {"mountain", "landscape", "rock"}},
                                                             {"bridge", {"bridge"}}};
    const VisionClassifier classifier(sharedNetwork(), sharedLabels());
    int shown = 0;
    int named = 0;
    for (const json& item : items) {
        std::set<std::string> wanted;
        for (const auto& content : item.value("labels", json::object()).value("content", json::array())) {
            if (const auto entry = words.find(content.get<std::string>()); entry != words.end())
                wanted.insert(entry->second.begin(), entry->second.end());
        }
        const auto image = wanted.empty() ? std::nullopt : decoded(item);
        if (!image)
            continue;
        ++shown;
        auto labels = classifier(*image).value();
        labels.resize(6);
        const bool isNamed = std::any_of(labels.begin(), labels.end(), [&](const ImageLabel& found) {
            return found.confidence >= 0.1F && wanted.contains(found.identifier);
        });
        named += isNamed;
        if (!isNamed)
            std::printf("not named: %s\n", item.at("file").get<std::string>().c_str());
    }
    EXPECT_GE(shown, 25);
    EXPECT_GE(named * 100, shown * 85) << named << " of " << shown;
}

TEST_F(RealPhotosTest, PrefersPhotosToTheirBlurredNoisyAndBadlyExposedVersions) {
    const auto score = [](const Image& image) {
        return BestShotSelector::score({sharedAesthetics().score(image),
                                        BestShotSelector::sharpness(SharpnessScorer::variance(image)),
                                        false});
    };
    struct Tally {
        int won = 0;
        int pairs = 0;
    };
    std::map<std::string, Tally> families;
    for (const json& item : items) {
        if (!isIn(item, {"trip_us2015", "trip_phone", "geo_europe", "scenes", "cameras", "bursts"}))
            continue;
        const auto photo = decoded(item);
        // What can hardly be seen has no quality to lose.
        if (!photo || std::max(photo->width, photo->height) < 480)
            continue;
        const double original = score(*photo);
        using namespace PaintedPhotos;
        const auto compare = [&](const char* family, const char* version, const Image& image) {
            Tally& tally = families[family];
            ++tally.pairs;
            if (original > score(image))
                ++tally.won;
            else
                std::printf("%s: the version %s wins\n", item.at("file").get<std::string>().c_str(), version);
        };
        compare("blurred", "blurred", blurred(*photo, 2));
        compare("blurred", "moved sideways", moved(*photo, 15, 1, 0));
        compare("blurred", "moved upwards", moved(*photo, 9, 0, 1));
        compare("blurred", "moved aslant", moved(*photo, 9, 1, 1));
        compare("noisy", "with noise of 10", noisy(*photo, 10));
        compare("noisy", "with noise of 20", noisy(*photo, 20));
        compare("noisy", "with noise of 40", noisy(*photo, 40));
        for (const double stops : {-2.0, -1.0, 1.0, 2.0})
            compare("badly exposed", std::to_string(stops).c_str(), exposed(*photo, stops));
    }
    for (const auto& [family, tally] : families) {
        std::printf("%s: %d of %d won\n", family.c_str(), tally.won, tally.pairs);
        EXPECT_GE(tally.pairs, 100) << family;
        EXPECT_GE(tally.won * 100, tally.pairs * 95) << family;
    }
}

} // namespace
} // namespace Analysis
