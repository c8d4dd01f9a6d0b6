// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ImageDecoder.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

// Runs over a folder of real photos with a manifest of what is known of each; named by ROAMLY_TEST_PHOTOS.

namespace {

using nlohmann::json;

class ImagePhotosTest : public testing::Test {
protected:
    void SetUp() override {
        const char* folder = std::getenv("ROAMLY_TEST_PHOTOS");
        if (!folder || !*folder)
            GTEST_SKIP() << "ROAMLY_TEST_PHOTOS names no folder of photos";
        m_folder = folder;
        std::ifstream in(m_folder / "manifest.json");
        m_items = json::parse(in).at("items");
    }

    [[nodiscard]] std::optional<Foundation::Image> decode(const std::string& name, int bound) const {
        return PhotoSources::ImageDecoder::decode(m_folder / name, bound);
    }

    std::filesystem::path m_folder;
    json m_items;
};

int lengthOf(const json& item, const char* side) {
    const auto found = item.find(side);
    return found != item.end() && found->is_number_integer() ? found->get<int>() : 0;
}

TEST_F(ImagePhotosTest, DecodesEveryPhotoUprightWithinTheBound) {
    constexpr int bound = 256;
    int decoded = 0;
    for (const json& item : m_items) {
        const std::string name = item.at("file");
        const std::string folder = name.substr(0, name.find('/'));
        if (folder == "music" || folder == "raw" || folder == "broken")
            continue;
        const int width = lengthOf(item, "upright_width"), height = lengthOf(item, "upright_height");
        if (width == 0 || name.ends_with(".gpx") || name.find("17000x17000") != std::string::npos)
            continue;
        const auto image = decode(name, bound);
        if (!image && item.contains("decode_error")) {
            std::cout << name << ": not shown here, nor elsewhere: " << item["decode_error"] << '\n';
            continue;
        }
        if (!image) {
            ADD_FAILURE() << name << " does not decode";
            continue;
        }
        ++decoded;
        const int longest = std::max(width, height);
        const double scale = longest > bound ? static_cast<double>(bound) / longest : 1;
        EXPECT_NEAR(image->width, width * scale, 0.51) << name;
        EXPECT_NEAR(image->height, height * scale, 0.51) << name;
    }
    std::cout << decoded << " photos decoded\n";
}

TEST_F(ImagePhotosTest, BrokenFilesYieldAWholePictureOrNone) {
    for (const json& item : m_items) {
        const std::string name = item.at("file");
        const std::string folder = name.substr(0, name.find('/'));
        if (folder != "raw" && folder != "broken" && folder != "music")
            continue;
        const auto image = decode(name, 256);
        if (image) {
            EXPECT_LE(std::max(image->width, image->height), 256) << name;
            EXPECT_EQ(image->pixels.size(),
                      static_cast<std::size_t>(image->width) * static_cast<std::size_t>(image->height) * 3)
                << name;
        }
        EXPECT_FALSE(image && folder == "music") << name;
        const std::string decoder = item.contains("decoded_by") && item["decoded_by"].is_string()
                                        ? item["decoded_by"].get<std::string>()
                                        : "none";
        // Not failures: what is worth showing of a damaged file is a matter of taste.
        if (folder != "music" && image.has_value() != (decoder != "none"))
            std::cout << name << ": " << (image ? "shown" : "not shown") << " here, elsewhere by " << decoder
                      << '\n';
    }
}

TEST_F(ImagePhotosTest, AllOrientationsOfOnePictureLookTheSame) {
    const auto reference = decode("orientation/Landscape_1.jpg", 300);
    ASSERT_TRUE(reference);
    for (int tag = 0; tag <= 8; ++tag) {
        const auto image = decode("orientation/Landscape_" + std::to_string(tag) + ".jpg", 300);
        ASSERT_TRUE(image) << tag;
        ASSERT_EQ(image->pixels.size(), reference->pixels.size()) << tag;
        double sum = 0;
        for (std::size_t i = 0; i < image->pixels.size(); ++i)
            sum += std::abs(image->pixels[i] - reference->pixels[i]);
        EXPECT_LT(sum / static_cast<double>(image->pixels.size()), 12) << tag;
    }
}

TEST_F(ImagePhotosTest, OnePictureInFourFormatsLooksTheSame) {
    const auto reference = decode("formats/sunrise.png", 300);
    ASSERT_TRUE(reference);
    for (const char* name : {"formats/sunrise.jpg", "formats/sunrise.webp", "formats/sunrise.avif"}) {
        const auto image = decode(name, 300);
        ASSERT_TRUE(image) << name;
        ASSERT_EQ(image->pixels.size(), reference->pixels.size()) << name;
        double sum = 0;
        for (std::size_t i = 0; i < image->pixels.size(); ++i)
            sum += std::abs(image->pixels[i] - reference->pixels[i]);
        EXPECT_LT(sum / static_cast<double>(image->pixels.size()), 4) << name;
    }
}

TEST_F(ImagePhotosTest, TheBombIsRefused) {
    EXPECT_FALSE(decode("formats/17000x17000.avif", 256));
}

} // namespace
