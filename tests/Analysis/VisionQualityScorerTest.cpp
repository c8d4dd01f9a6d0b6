#include "PaintedPhotos.h"
#include "VisionFiles.h"

#include <Analysis/Aesthetics.h>
#include <Analysis/BestShotSelector.h>
#include <Analysis/SharpnessScorer.h>
#include <Analysis/VisionQualityScorer.h>

#include <gtest/gtest.h>

namespace Analysis {
namespace {

using Foundation::Image;

double wholeScore(const Image& image) {
    return BestShotSelector::score(
        {Aesthetics::score(image), BestShotSelector::sharpness(SharpnessScorer::variance(image)), false});
}

TEST(AestheticsTest, PrefersPhotosToTheirBlurredNoisyAndBadlyExposedVersions) {
    int won = 0;
    int pairs = 0;
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        const Image photo = PaintedPhotos::scene(seed, 400, 300);
        const double score = wholeScore(photo);
        for (const Image& worse : {PaintedPhotos::blurred(photo, 1), PaintedPhotos::blurred(photo, 3),
                                   PaintedPhotos::noisy(photo, 8), PaintedPhotos::noisy(photo, 15),
                                   PaintedPhotos::noisy(photo, 30), PaintedPhotos::exposed(photo, 2),
                                   PaintedPhotos::exposed(photo, -2), PaintedPhotos::exposed(photo, -3)}) {
            ++pairs;
            won += score > wholeScore(worse);
        }
    }
    EXPECT_GE(won * 100, pairs * 95) << won << " of " << pairs;
}

TEST(AestheticsTest, MeasuresTheNoiseThatWasAdded) {
    const Image grey{320, 240, std::vector<std::uint8_t>(std::size_t{320} * 240 * 3, 120)};
    EXPECT_EQ(Aesthetics::measures(grey).noise, 0);
    // Of grey: three independent channels, weighed.
    EXPECT_NEAR(Aesthetics::measures(PaintedPhotos::noisy(grey, 10)).noise, 6.68, 0.8);
}

TEST(AestheticsTest, MeasuresTonesAndWhatIsBurntOut) {
    Image image{64, 64, std::vector<std::uint8_t>(std::size_t{64} * 64 * 3, 0)};
    std::fill_n(image.pixels.begin(), image.pixels.size() / 4, std::uint8_t{255});
    const auto measures = Aesthetics::measures(image);
    EXPECT_DOUBLE_EQ(measures.whites, 0.25);
    EXPECT_DOUBLE_EQ(measures.blacks, 0.75);
    EXPECT_DOUBLE_EQ(measures.burntOut, 0.25);
    EXPECT_DOUBLE_EQ(measures.meanBrightness, 0.25);
    // Two levels, a quarter and three quarters, of 64.
    EXPECT_NEAR(measures.tonalRange, 0.8113 / 6, 1e-4);
}

TEST(AestheticsTest, StaysBetweenZeroAndOneForImagesOfEveryKind) {
    std::uint32_t state = 1;
    for (const auto& [width, height] : {std::pair{3, 3}, {3, 500}, {500, 3}, {17, 17}, {64, 64}}) {
        for (const int kind : {0, 1, 2, 3}) {
            Image image{width, height, {}};
            for (int i = 0; i < width * height * 3; ++i) {
                state = state * 1664525 + 1013904223;
                image.pixels.push_back(kind == 0   ? 0
                                       : kind == 1 ? 255
                                       : kind == 2 ? static_cast<std::uint8_t>(state >> 24)
                                                   : static_cast<std::uint8_t>((state >> 31) * 255));
            }
            const double score = Aesthetics::score(image);
            EXPECT_GE(score, 0);
            EXPECT_LE(score, 1);
        }
    }
}

TEST(AestheticsTest, ScoresAnImageTooSmallToTellOneHalf) {
    EXPECT_EQ(Aesthetics::score(Image{}), 0.5);
    EXPECT_EQ(Aesthetics::score(Image{2, 5, std::vector<std::uint8_t>(30, 200)}), 0.5);
}

TEST(VisionQualityScorerTest, FindsNoFacesWhereThereAreNone) {
    VisionQualityScorer scorer(sharedFaceFinder());
    for (std::uint32_t seed = 1; seed <= 4; ++seed)
        EXPECT_FALSE(scorer.quality(PaintedPhotos::scene(seed, 640, 480)).hasOpenEyedFace) << seed;
    EXPECT_FALSE(scorer.quality(Image{}).hasOpenEyedFace);
    EXPECT_FALSE(scorer.quality(Image{1, 1, {9, 9, 9}}).hasOpenEyedFace);
}

TEST(VisionQualityScorerTest, ScoresAestheticsOfAnEmptyImageOneHalf) {
    VisionQualityScorer scorer(sharedFaceFinder());
    EXPECT_EQ(scorer.quality(Image{}).aesthetics, 0.5);
}

} // namespace
} // namespace Analysis
