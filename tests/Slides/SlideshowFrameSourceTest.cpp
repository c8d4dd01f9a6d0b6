// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Slides/SlideshowFrameSource.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <latch>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Foundation::Image;
using Foundation::Uuid;
using Frames::FrameSize;
using Frames::YuvFrame;
using ProjectModel::PhotoRef;
using Slides::SlideshowFrameSource;
using Timeline::PhotoSegment;
using Timeline::PhotoState;
using Colour = std::array<int, 3>;

constexpr FrameSize size{320, 180};
constexpr Colour red{255, 0, 0};
constexpr Colour blue{0, 0, 255};
constexpr Colour white{255, 255, 255};
constexpr Colour black{0, 0, 0};

Uuid uuid(int number) {
    Uuid id;
    id.bytes[15] = static_cast<std::uint8_t>(number);
    return id;
}

Image solid(const Colour& colour, int width = 320, int height = 180) {
    Image image{width, height, {}};
    for (int i = 0; i < width * height; ++i)
        for (const int component : colour)
            image.pixels.push_back(static_cast<std::uint8_t>(component));
    return image;
}

/// Photos by the text of their reference; those that are not there cannot be loaded. Counts what is asked
/// for.
class Photos {
public:
    void add(int number, const Image& image) { m_images[std::to_string(number)] = image; }

    SlideshowFrameSource::PhotoLoader loader() {
        return [this](const PhotoRef& ref) -> std::optional<Image> {
            const std::string name = std::get<ProjectModel::LibraryPhotoRef>(ref).localIdentifier;
            const std::scoped_lock lock(m_mutex);
            ++m_loads[name];
            const auto image = m_images.find(name);
            return image == m_images.end() ? std::nullopt : std::optional(image->second);
        };
    }

    int loads(int number) {
        const std::scoped_lock lock(m_mutex);
        return m_loads[std::to_string(number)];
    }

    /// Holds photos 1 to `count`, whether they can be loaded or not.
    static ProjectModel::Project project(int count) {
        ProjectModel::Project project;
        for (int i = 1; i <= count; ++i)
            project.photos.push_back({.id = uuid(i),
                                      .source = ProjectModel::LibraryPhotoRef{std::to_string(i)},
                                      .captureDate = {},
                                      .coordinate = {},
                                      .location = {},
                                      .clusterID = {},
                                      .qualityScore = {},
                                      .caption = {},
                                      .captionProvenance = {},
                                      .isSelected = true,
                                      .selectionProvenance = ProjectModel::Provenance::proposed,
                                      .isMissing = false,
                                      .sourceID = {}});
        return project;
    }

private:
    std::mutex m_mutex;
    std::map<std::string, Image> m_images;
    std::map<std::string, int> m_loads;
};

PhotoSegment segment(int number) {
    PhotoSegment result;
    result.photoID = uuid(number);
    result.duration = 5;
    return result;
}

PhotoState shown(int number) {
    return {.current = segment(number), .incoming = {}};
}

PhotoState dissolve(const PhotoSegment& from, const PhotoSegment& to, double opacity) {
    return {.current = from,
            .progress = 0.9,
            .incoming = to,
            .incomingProgress = 0.1,
            .incomingOpacity = opacity};
}

Colour colourAt(const YuvFrame& frame, int x, int y) {
    const Image image = toImage(frame);
    const std::uint8_t* pixel = image.row(y) + 3 * x;
    return {pixel[0], pixel[1], pixel[2]};
}

void expectNear(const Colour& actual, const Colour& expected, int tolerance = 4) {
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
}

/// In the upper half, which is clear of shades as long as there is no chapter title.
Colour upperColour(const YuvFrame& frame) {
    return colourAt(frame, size.width / 2, size.height / 4);
}

bool samePictures(const YuvFrame& a, const YuvFrame& b) {
    return toImage(a) == toImage(b);
}

TEST(SlideshowFrameSourceTest, DrawsAPhotoOverBlack) {
    Photos photos;
    photos.add(1, solid(red));
    SlideshowFrameSource source(Photos::project(1), photos.loader());
    const auto frame = source.frame(shown(1), size);
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->size(), size);
    expectNear(upperColour(*frame), red);
    EXPECT_TRUE(source.failedPhotoIDs().empty());
}

TEST(SlideshowFrameSourceTest, APhotoThatFailedIsBlackWithItsOverlayAndListedOnce) {
    Photos photos;
    SlideshowFrameSource source(Photos::project(1), photos.loader());
    PhotoState state = shown(1);
    state.current.overlay.caption = "HHHHHH";
    for (int i = 0; i < 3; ++i) {
        const auto frame = source.frame(state, size);
        ASSERT_NE(frame, nullptr);
        const Image image = toImage(*frame);
        expectNear(upperColour(*frame), black);
        EXPECT_EQ(*std::max_element(image.pixels.begin(), image.pixels.end()), 255) << "the caption is there";
    }
    EXPECT_EQ(source.failedPhotoIDs(), std::set{uuid(1)});
    EXPECT_EQ(photos.loads(1), 1) << "a failure is not tried again";
}

TEST(SlideshowFrameSourceTest, TheFailedPhotosFrameIsJustBlackShadesAndText) {
    Photos photos;
    SlideshowFrameSource source(Photos::project(1), photos.loader());
    const auto failed = source.frame(shown(1), size);
    const auto empty = source.frame(Timeline::EmptyState{}, size);
    EXPECT_TRUE(samePictures(*failed, *empty)) << "a shade over black stays black";
}

TEST(SlideshowFrameSourceTest, AnUnknownPhotoAnEmptyPictureAndAThrowingLoaderAreFailures) {
    const auto load = [](const PhotoRef& ref) -> std::optional<Image> {
        if (std::get<ProjectModel::LibraryPhotoRef>(ref).localIdentifier == "1")
            return Image{};
        throw std::runtime_error("broken");
    };
    SlideshowFrameSource source(Photos::project(2), load);
    for (const int number : {1, 2, 99})
        EXPECT_NE(source.frame(shown(number), size), nullptr);
    EXPECT_EQ(source.failedPhotoIDs(), (std::set{uuid(1), uuid(2), uuid(99)}));
}

TEST(SlideshowFrameSourceTest, TheBottomShadeIsOnEveryPhotoEvenWithoutTexts) {
    Photos photos;
    photos.add(1, solid(white));
    SlideshowFrameSource source(Photos::project(1), photos.loader());
    const auto frame = source.frame(shown(1), size);
    expectNear(colourAt(*frame, 160, 10), white);
    expectNear(colourAt(*frame, 160, 88), white);
    expectNear(colourAt(*frame, 160, 135), {191, 191, 191});
    expectNear(colourAt(*frame, 160, 179), {128, 128, 128});
}

TEST(SlideshowFrameSourceTest, TheTopShadeIsThereWithAChapterTitle) {
    Photos photos;
    photos.add(1, solid(white));
    SlideshowFrameSource source(Photos::project(1), photos.loader());
    PhotoState state = shown(1);
    state.current.overlay.chapterTitle = "i";
    const auto frame = source.frame(state, size);
    expectNear(colourAt(*frame, 20, 0), {115, 115, 115});
    expectNear(colourAt(*frame, 20, 45), {185, 185, 185});
    expectNear(colourAt(*frame, 20, 89), white);
}

TEST(SlideshowFrameSourceTest, InADissolveTheOutgoingPhotoFadesWhileTheIncomingOneAppears) {
    Photos photos;
    photos.add(1, solid(red));
    photos.add(2, solid(blue));
    SlideshowFrameSource source(Photos::project(2), photos.loader());
    for (const double a : {0.0, 0.25, 0.5, 0.75, 1.0}) {
        const auto frame = source.frame(dissolve(segment(1), segment(2), a), size);
        expectNear(upperColour(*frame),
                   {static_cast<int>(255 * (1 - a) * (1 - a)), 0, static_cast<int>(255 * a)}, 5);
    }
}

TEST(SlideshowFrameSourceTest, ADissolveInWhichIncomingEqualsCurrentDrawsCurrentAtFullStrength) {
    Photos photos;
    photos.add(1, solid(red));
    SlideshowFrameSource source(Photos::project(1), photos.loader());
    expectNear(upperColour(*source.frame(dissolve(segment(1), segment(1), 0.5), size)), red);
    // The same photo in another segment is another thing: it does fade, down to three quarters half-way.
    PhotoSegment later = segment(1);
    later.start = 4.25;
    expectNear(upperColour(*source.frame(dissolve(segment(1), later, 0.5), size)), {191, 0, 0}, 5);
}

TEST(SlideshowFrameSourceTest, AFailedPhotoInADissolveLetsTheOtherShowThrough) {
    Photos photos;
    photos.add(2, solid(blue));
    SlideshowFrameSource source(Photos::project(2), photos.loader());
    expectNear(upperColour(*source.frame(dissolve(segment(1), segment(2), 0.5), size)), {0, 0, 128}, 5);
    expectNear(upperColour(*source.frame(dissolve(segment(2), segment(1), 0.5), size)), {0, 0, 128}, 5);
    EXPECT_EQ(source.failedPhotoIDs(), std::set{uuid(1)});
}

TEST(SlideshowFrameSourceTest, TheCurrentPhotosOverlayStandsAtFullStrengthUntilTheDissolveEnds) {
    Photos photos;
    SlideshowFrameSource source(Photos::project(2), photos.loader());
    PhotoSegment first = segment(1);
    first.overlay.caption = "HHHHHH";
    PhotoSegment second = segment(2);
    second.overlay.caption = "A quite different one";
    PhotoState alone = shown(1);
    alone.current = first;
    // Neither photo can be loaded, so that the frames show the texts alone.
    const auto expected = source.frame(alone, size);
    for (const double opacity : {0.01, 0.5, 0.99})
        EXPECT_TRUE(samePictures(*source.frame(dissolve(first, second, opacity), size), *expected))
            << opacity;
}

TEST(SlideshowFrameSourceTest, ASquarePhotoIsPillarBoxed) {
    Photos photos;
    photos.add(1, solid(white, 400, 400));
    SlideshowFrameSource source(Photos::project(1), photos.loader());
    const auto frame = source.frame(shown(1), size);
    expectNear(colourAt(*frame, 65, 40), black);
    expectNear(colourAt(*frame, 75, 40), white);
    expectNear(colourAt(*frame, 244, 40), white);
    expectNear(colourAt(*frame, 254, 40), black);
}

TEST(SlideshowFrameSourceTest, AKenBurnsScaleEnlargesAboutTheFramesCentre) {
    Photos photos;
    photos.add(1, solid(white, 400, 400));
    SlideshowFrameSource source(Photos::project(1), photos.loader());
    PhotoState state = shown(1);
    state.current.kenBurns =
        Timeline::KenBurnsTransform{.startScale = 1, .endScale = 1.12, .startOffset = {}, .endOffset = {}};
    state.progress = 1;
    const auto frame = source.frame(state, size);
    // 180 pixels become 201.6, centred: from 59.2 to 260.8.
    expectNear(colourAt(*frame, 56, 40), black);
    expectNear(colourAt(*frame, 62, 40), white);
    expectNear(colourAt(*frame, 257, 40), white);
    expectNear(colourAt(*frame, 264, 40), black);
}

TEST(SlideshowFrameSourceTest, BothOffsetsCountInFrameWidths) {
    Photos photos;
    photos.add(1, solid(white, 320, 180));
    SlideshowFrameSource source(Photos::project(1), photos.loader());
    PhotoState state = shown(1);
    state.current.kenBurns = Timeline::KenBurnsTransform{
        .startScale = 1, .endScale = 1, .startOffset = {0.1, 0.1}, .endOffset = {}};
    const auto frame = source.frame(state, size);
    expectNear(colourAt(*frame, 28, 60), black);
    expectNear(colourAt(*frame, 36, 60), white);
    expectNear(colourAt(*frame, 200, 28), black);
    expectNear(colourAt(*frame, 200, 36), white);
}

TEST(SlideshowFrameSourceTest, IncomingAndCurrentMoveByTheirOwnProgress) {
    Photos photos;
    photos.add(1, solid(white, 320, 180));
    photos.add(2, solid(white, 320, 180));
    SlideshowFrameSource source(Photos::project(2), photos.loader());
    const Timeline::KenBurnsTransform slide{
        .startScale = 1, .endScale = 1, .startOffset = {0, 0}, .endOffset = {0.5, 0}};
    PhotoState state = dissolve(segment(1), segment(2), 1);
    state.current.kenBurns = slide;
    state.incoming->kenBurns = slide;
    state.progress = 0;
    state.incomingProgress = 0.5;
    const auto frame = source.frame(state, size);
    expectNear(colourAt(*frame, 76, 40), black);
    expectNear(colourAt(*frame, 84, 40), white);
}

TEST(SlideshowFrameSourceTest, TheSeventhPhotoEvictsTheOldestOfSix) {
    Photos photos;
    for (int i = 1; i <= 7; ++i)
        photos.add(i, solid(red, 16, 9));
    SlideshowFrameSource source(Photos::project(7), photos.loader());
    for (int i = 1; i <= 7; ++i)
        (void)source.frame(shown(i), size);
    for (int i = 2; i <= 7; ++i) {
        (void)source.frame(shown(i), size);
        EXPECT_EQ(photos.loads(i), 1) << i;
    }
    (void)source.frame(shown(1), size);
    EXPECT_EQ(photos.loads(1), 2);
}

TEST(SlideshowFrameSourceTest, APhotoInUseIsNotEvicted) {
    Photos photos;
    for (int i = 1; i <= 4; ++i)
        photos.add(i, solid(red, 16, 9));
    SlideshowFrameSource source(Photos::project(4), photos.loader(), 2);
    for (const int number : {1, 2, 1, 3, 1, 4, 1})
        (void)source.frame(shown(number), size);
    EXPECT_EQ(photos.loads(1), 1);
}

TEST(SlideshowFrameSourceTest, ADissolveIsDrawnHoweverSmallTheCache) {
    Photos photos;
    photos.add(1, solid(red));
    photos.add(2, solid(blue));
    SlideshowFrameSource source(Photos::project(2), photos.loader(), 0);
    expectNear(upperColour(*source.frame(dissolve(segment(1), segment(2), 0.5), size)), {64, 0, 128}, 5);
}

TEST(SlideshowFrameSourceTest, PhotosAreLoadedOnlyWhenAFrameNeedsThem) {
    Photos photos;
    photos.add(1, solid(red));
    SlideshowFrameSource source(Photos::project(2), photos.loader());
    (void)source.frame(Timeline::EmptyState{}, size);
    (void)source.frame(Timeline::ChapterSegment{"Rome", 0, 3}, size);
    EXPECT_EQ(photos.loads(1), 0);
    (void)source.frame(shown(1), size);
    EXPECT_EQ(photos.loads(1), 1);
    EXPECT_EQ(photos.loads(2), 0);
}

TEST(SlideshowFrameSourceTest, AnIncomingPhotoIsLoadedEvenWhileItIsStillClear) {
    Photos photos;
    photos.add(1, solid(red));
    SlideshowFrameSource source(Photos::project(2), photos.loader());
    (void)source.frame(dissolve(segment(1), segment(2), 0), size);
    EXPECT_EQ(source.failedPhotoIDs(), std::set{uuid(2)});
}

TEST(SlideshowFrameSourceTest, AChapterCardIsItsTitleOnBlack) {
    Photos photos;
    SlideshowFrameSource source(Photos::project(0), photos.loader());
    const auto frame = source.frame(Timeline::ChapterSegment{"HHH", 0, 3}, size);
    const Image image = toImage(*frame);
    int left = size.width;
    int right = 0;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            if (image.row(y)[3 * x] > 128) {
                left = std::min(left, x);
                right = std::max(right, x);
            }
    EXPECT_NEAR((left + right + 1) / 2.0, 160, 2);
    EXPECT_GT(right - left, 60);
    expectNear(colourAt(*frame, 20, 20), black);
    expectNear(colourAt(*frame, 160, 175), black);
}

TEST(SlideshowFrameSourceTest, FramesThatLookTheSameAreTheSameObject) {
    Photos photos;
    photos.add(1, solid(red));
    photos.add(2, solid(blue));
    SlideshowFrameSource source(Photos::project(3), photos.loader());
    // A photo without motion, whatever its progress.
    PhotoState later = shown(1);
    later.progress = 0.7;
    EXPECT_EQ(source.frame(shown(1), size), source.frame(later, size));
    // A card, whatever its times.
    EXPECT_EQ(source.frame(Timeline::ChapterSegment{"Rome", 0, 3}, size),
              source.frame(Timeline::ChapterSegment{"Rome", 9, 4}, size));
    EXPECT_EQ(source.frame(Timeline::EmptyState{}, size), source.frame(Timeline::EmptyState{}, size));
    // A photo that cannot be loaded, even in motion.
    PhotoState missing = shown(3);
    missing.current.kenBurns =
        Timeline::KenBurnsTransform{.startScale = 1, .endScale = 1.1, .startOffset = {}, .endOffset = {}};
    PhotoState missingLater = missing;
    missingLater.progress = 0.5;
    EXPECT_EQ(source.frame(missing, size), source.frame(missingLater, size));

    EXPECT_NE(source.frame(shown(1), size), source.frame(shown(2), size));
    EXPECT_NE(source.frame(shown(1), size), source.frame(shown(1), FrameSize{160, 90}));
    EXPECT_NE(source.frame(Timeline::ChapterSegment{"Rome", 0, 3}, size),
              source.frame(Timeline::ChapterSegment{"Oslo", 0, 3}, size));
}

TEST(SlideshowFrameSourceTest, MovingPhotosAndDissolvesGiveFramesOfTheirOwn) {
    Photos photos;
    photos.add(1, solid(white, 100, 100));
    photos.add(2, solid(blue));
    SlideshowFrameSource source(Photos::project(2), photos.loader());
    PhotoState moving = shown(1);
    moving.current.kenBurns =
        Timeline::KenBurnsTransform{.startScale = 1, .endScale = 1.1, .startOffset = {}, .endOffset = {}};
    PhotoState later = moving;
    later.progress = 1;
    EXPECT_FALSE(samePictures(*source.frame(moving, size), *source.frame(later, size)));
    EXPECT_FALSE(samePictures(*source.frame(dissolve(segment(1), segment(2), 0.2), size),
                              *source.frame(dissolve(segment(1), segment(2), 0.4), size)));
}

TEST(SlideshowFrameSourceTest, ASizeThatIsNotPositiveYieldsNothing) {
    Photos photos;
    SlideshowFrameSource source(Photos::project(0), photos.loader());
    EXPECT_EQ(source.frame(Timeline::EmptyState{}, {0, 100}), nullptr);
    EXPECT_EQ(source.frame(Timeline::EmptyState{}, {100, -1}), nullptr);
}

TEST(SlideshowFrameSourceTest, ThreadsThatNeedTheSamePhotoLoadItOnce) {
    constexpr int threads = 6;
    std::atomic<int> loads = 0;
    std::latch haveAsked(threads);
    const auto load = [&](const PhotoRef&) {
        ++loads;
        haveAsked.wait();
        return std::optional(solid(red));
    };
    SlideshowFrameSource source(Photos::project(1), load);
    std::vector<std::shared_ptr<const YuvFrame>> frames(threads);
    {
        std::vector<std::jthread> workers;
        for (int i = 0; i < threads; ++i)
            workers.emplace_back([&, i] {
                PhotoState state = shown(1);
                state.current.kenBurns = Timeline::KenBurnsTransform{};
                state.progress = i / 10.0;
                haveAsked.count_down();
                frames[static_cast<std::size_t>(i)] = source.frame(state, size);
            });
    }
    EXPECT_EQ(loads, 1);
    for (const auto& frame : frames)
        expectNear(upperColour(*frame), red);
}

TEST(SlideshowFrameSourceTest, AFailureSeenByManyThreadsIsTriedAndListedOnce) {
    constexpr int threads = 6;
    std::atomic<int> loads = 0;
    std::latch haveAsked(threads);
    const auto load = [&](const PhotoRef&) {
        ++loads;
        haveAsked.wait();
        return std::optional<Image>();
    };
    SlideshowFrameSource source(Photos::project(1), load);
    {
        std::vector<std::jthread> workers;
        for (int i = 0; i < threads; ++i)
            workers.emplace_back([&] {
                haveAsked.count_down();
                for (int n = 0; n < 5; ++n)
                    (void)source.frame(shown(1), size);
            });
    }
    EXPECT_EQ(loads, 1);
    EXPECT_EQ(source.failedPhotoIDs().size(), 1U);
}

TEST(SlideshowFrameSourceTest, AWholeShowRenderedByThreadsLooksLikeOneRenderedByOne) {
    Photos photos;
    for (int i = 1; i <= 5; i += 2)
        photos.add(i, solid({40 * i, 255 - 40 * i, 128}, 64 + i, 48));
    std::vector<Timeline::RenderState> states;
    for (int i = 1; i <= 5; ++i) {
        PhotoSegment segmentWithTexts = segment(i);
        segmentWithTexts.overlay = {.locationText = "Kyōto 京都",
                                    .isApproximate = i % 2 == 0,
                                    .caption = "Photo " + std::to_string(i) + " 🍁",
                                    .chapterTitle = {}};
        segmentWithTexts.kenBurns = Timeline::KenBurnsTransform{
            .startScale = 1, .endScale = 1.1, .startOffset = {0.02, -0.01}, .endOffset = {}};
        states.push_back(Timeline::ChapterSegment{"Place " + std::to_string(i), 0, 3});
        states.push_back(PhotoState{.current = segmentWithTexts, .progress = 0.3, .incoming = {}});
        states.push_back(dissolve(segmentWithTexts, segment(i % 5 + 1), 0.3));
    }
    SlideshowFrameSource alone(Photos::project(5), photos.loader());
    std::vector<Image> expected;
    for (const auto& state : states)
        expected.push_back(toImage(*alone.frame(state, size)));

    SlideshowFrameSource shared(Photos::project(5), photos.loader(), 2);
    std::atomic<std::size_t> next = 0;
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> workers;
        for (int i = 0; i < 4; ++i)
            workers.emplace_back([&] {
                for (std::size_t n = next++; n < states.size(); n = next++)
                    if (toImage(*shared.frame(states[n], size)) != expected[n])
                        ++wrong;
            });
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(shared.failedPhotoIDs(), (std::set{uuid(2), uuid(4)}));
}

} // namespace
