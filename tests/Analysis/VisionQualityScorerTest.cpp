// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PaintedPhotos.h"
#include "VisionFiles.h"

#include <Analysis/VisionQualityScorer.h>

#include <gtest/gtest.h>

namespace Analysis {
namespace {

using Foundation::Image;

TEST(VisionQualityScorerTest, FindsNoFacesWhereThereAreNone) {
    VisionQualityScorer scorer(sharedAesthetics(), sharedFaceFinder());
    for (std::uint32_t seed = 1; seed <= 4; ++seed)
        EXPECT_FALSE(scorer.quality(PaintedPhotos::scene(seed, 640, 480)).hasOpenEyedFace) << seed;
    EXPECT_FALSE(scorer.quality(Image{}).hasOpenEyedFace);
    EXPECT_FALSE(scorer.quality(Image{1, 1, {9, 9, 9}}).hasOpenEyedFace);
}

TEST(VisionQualityScorerTest, ScoresAestheticsOfAnEmptyImageOneHalf) {
    VisionQualityScorer scorer(sharedAesthetics(), sharedFaceFinder());
    EXPECT_EQ(scorer.quality(Image{}).aesthetics, 0.5);
}

TEST(VisionQualityScorerTest, ScoresAestheticsOfThePhoto) {
    VisionQualityScorer scorer(sharedAesthetics(), sharedFaceFinder());
    const Image photo = PaintedPhotos::scene(3, 320, 240);
    EXPECT_EQ(scorer.quality(photo).aesthetics, sharedAesthetics().score(photo));
}

} // namespace
} // namespace Analysis
