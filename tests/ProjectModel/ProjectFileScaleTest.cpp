// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/ProjectFile.h>
#include <ProjectModel/RandomProject.h>

#include <gtest/gtest.h>

#include <string>

namespace ProjectModel {
namespace {

/// Photos as an import and an analysis leave them: nearly every member set, a bookmark of 120 bytes.
Project travelledProject(std::size_t photoCount) {
    Testing::RandomProject random{81};
    Project project;
    project.sources.push_back(random.source());
    for (std::size_t i = 0; i < photoCount; ++i) {
        PhotoItem photo = random.photo();
        Foundation::Bytes bookmark;
        while (bookmark.size() < 120)
            bookmark.push_back(static_cast<std::uint8_t>(random.below(256)));
        photo.source = FilePhotoRef{.bookmark = bookmark, .displayName = "IMG_" + std::to_string(i) + ".JPG"};
        photo.captureDate = random.instant();
        photo.coordinate = Coordinate{.latitude = random.unit() * 90, .longitude = random.unit() * 180};
        photo.location = random.location();
        photo.qualityScore = random.unit();
        photo.sourceID = project.sources[0].id;
        project.photos.push_back(std::move(photo));
    }
    return project;
}

TEST(ProjectFileScaleTest, LoadsTwentyThousandPhotosAsTheyWereSaved) {
    const Project project = travelledProject(20'000);
    EXPECT_TRUE(decodeProject(encoded(project)) == project);
}

} // namespace
} // namespace ProjectModel
