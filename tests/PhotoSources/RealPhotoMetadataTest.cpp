// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs over a folder of real photos with a manifest of what is known about each, named by ROAMLY_TEST_PHOTOS.

#include <Foundation/Bookmark.h>
#include <PhotoSources/ContentType.h>
#include <PhotoSources/EmbeddedExif.h>
#include <PhotoSources/Exiv2Tags.h>
#include <PhotoSources/FileSource.h>
#include <PhotoSources/FolderImporter.h>
#include <PhotoSources/ImageFileMetadata.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <string>

namespace PhotoSources {
namespace {

namespace fs = std::filesystem;

class RealPhotoMetadataTest : public testing::Test {
protected:
    void SetUp() override {
        const char* folder = std::getenv("ROAMLY_TEST_PHOTOS");
        if (folder == nullptr)
            GTEST_SKIP() << "ROAMLY_TEST_PHOTOS names no folder";
        m_folder = folder;
        std::ifstream file{m_folder / "manifest.json"};
        ASSERT_TRUE(file) << m_folder << " has no manifest.json";
        m_items = nlohmann::json::parse(file).at("items");
    }

    fs::path m_folder;
    nlohmann::json m_items;
};

/// "2023-07-14T18:22:05+02:00" as a capture date is read.
std::optional<Foundation::Instant> captureDate(const std::string& text) {
    std::string date = text.substr(0, 19);
    for (const std::size_t position : {4U, 7U})
        date.at(position) = ':';
    date.at(10) = ' ';
    const std::string offset = text.substr(19);
    return ImageFileMetadataReader::parseExifDate(date, offset.empty() ? std::nullopt
                                                                       : std::optional<std::string>{offset});
}

TEST_F(RealPhotoMetadataTest, CaptureDatesAndPositionsAreThoseOfTheManifest) {
    std::size_t compared = 0;
    std::size_t disagreements = 0;
    for (const nlohmann::json& item : m_items) {
        if (!item.contains("capture"))
            continue;
        ++compared;
        const std::string name = item.at("file");
        const ImageFileMetadata metadata = ImageFileMetadataReader::read(m_folder / name);
        const auto& capture = item.at("capture");
        const auto expected = capture.is_null() ? std::nullopt : captureDate(capture.get<std::string>());
        const auto actual = metadata.captureDateIsLowConfidence ? std::nullopt : metadata.captureDate;
        if (actual != expected) {
            ++disagreements;
            std::cout << "capture date of " << name << ": "
                      << (actual ? Foundation::iso8601(*actual) : "none") << ", manifest: " << capture
                      << '\n';
        }
        const bool hasPosition = !item.at("lat").is_null() && !item.at("lon").is_null();
        const bool agrees =
            hasPosition == metadata.coordinate.has_value() &&
            (!hasPosition ||
             (std::fabs(metadata.coordinate->latitude - item.at("lat").get<double>()) < 1e-5 &&
              std::fabs(metadata.coordinate->longitude - item.at("lon").get<double>()) < 1e-5));
        if (!agrees) {
            ++disagreements;
            std::cout << "position of " << name << ": ";
            if (metadata.coordinate)
                std::cout << metadata.coordinate->latitude << ", " << metadata.coordinate->longitude;
            else
                std::cout << "none";
            std::cout << ", manifest: " << item.at("lat") << ", " << item.at("lon") << '\n';
        }
    }
    EXPECT_GT(compared, 0U);
    EXPECT_EQ(disagreements, 0U) << "of " << compared << " files";
}

TEST_F(RealPhotoMetadataTest, OwnReadingAgreesWithExiv2) {
    std::size_t compared = 0;
    for (const nlohmann::json& item : m_items) {
        const fs::path path = m_folder / item.at("file").get<std::string>();
        const std::optional<FileSource> file = FileSource::open(path);
        const std::optional<ExifTags> own = file ? readEmbeddedExif(*file) : std::nullopt;
        if (!own)
            continue;
        const ExifTags reference = readExiv2Tags(path);
        if (reference == ExifTags{})
            continue; // nothing to compare with: none there, or a file that Exiv2 refuses
        ++compared;
        EXPECT_EQ(own->dateTimeOriginal, reference.dateTimeOriginal) << path;
        EXPECT_EQ(own->offsetTimeOriginal, reference.offsetTimeOriginal) << path;
        EXPECT_EQ(own->latitude, reference.latitude) << path;
        EXPECT_EQ(own->longitude, reference.longitude) << path;
        EXPECT_EQ(own->latitudeRef, reference.latitudeRef) << path;
        EXPECT_EQ(own->longitudeRef, reference.longitudeRef) << path;
    }
    EXPECT_GT(compared, 0U);
}

TEST_F(RealPhotoMetadataTest, ImportTakesEveryPictureAndNothingElse) {
    const std::vector<ProjectModel::PhotoItem> photos = FolderImporter::importPhotos(m_folder);
    Foundation::BookmarkResolver resolver;
    std::set<std::string> imported;
    for (const ProjectModel::PhotoItem& photo : photos)
        imported.insert(resolver.resolve(std::get<ProjectModel::FilePhotoRef>(photo.source).bookmark)
                            ->lexically_relative(m_folder)
                            .string());
    EXPECT_EQ(imported.size(), photos.size());
    for (const nlohmann::json& item : m_items) {
        const std::string name = item.at("file");
        // Files that something could decode, or whose metadata something could read, are pictures.
        if (item.contains("decoded_by") && !item.at("decoded_by").is_null()) {
            EXPECT_TRUE(imported.contains(name)) << name;
        }
        if (item.contains("audio")) {
            EXPECT_FALSE(imported.contains(name)) << name;
        }
        if (!imported.contains(name))
            std::cout << "not imported: " << name << '\n';
    }
}

} // namespace
} // namespace PhotoSources
