// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Jobs/ActionQueue.h>
#include <Roamly/Platform/ThumbnailRequests.h>
#include <Support/TemporaryFolder.h>
#include <Support/TestPhotos.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Foundation::Image;
using Foundation::Uuid;
using Platform::Thumbnail;
using Platform::ThumbnailProvider;
using Platform::ThumbnailRequests;
using ProjectModel::FilePhotoRef;
using ProjectModel::LibraryPhotoRef;
using ProjectModel::PhotoRef;
using testing::ElementsAre;

/// A photo library whose pictures come when the test lets them.
class GatedLibrary {
public:
    Platform::AppImageProvider::LibraryImageLoader loader() {
        return [this](const std::string& identifier, int maxPixel) -> std::optional<Image> {
            std::unique_lock lock{m_mutex};
            m_asked.push_back(identifier);
            m_changed.notify_all();
            m_changed.wait(lock, [&] { return m_isOpen; });
            if (identifier == "none")
                return std::nullopt;
            return Image{maxPixel, maxPixel,
                         std::vector<std::uint8_t>(static_cast<std::size_t>(maxPixel * maxPixel * 3), 0x55)};
        };
    }
    void awaitRequests(std::size_t count) {
        std::unique_lock lock{m_mutex};
        m_changed.wait(lock, [&] { return m_asked.size() >= count; });
    }
    void open() {
        const std::scoped_lock lock{m_mutex};
        m_isOpen = true;
        m_changed.notify_all();
    }
    /// In the order of the asking.
    std::vector<std::string> asked() {
        const std::scoped_lock lock{m_mutex};
        return m_asked;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::string> m_asked;
    bool m_isOpen = false;
};

PhotoRef bookmarked(const fs::path& file) {
    return FilePhotoRef{Foundation::makeBookmark(file).value(), file.filename()};
}

unsigned middle(const Thumbnail& image) {
    const std::uint8_t* pixel = image->row(image->height / 2) + 3 * (image->width / 2);
    return static_cast<unsigned>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
}

class ThumbnailRequestsTest : public testing::Test {
protected:
    /// One thread decodes, so that there is an order.
    void SetUp() override { provide(std::size_t{96} << 20); }
    // A test that failed half-way must not hang.
    void TearDown() override { m_library.open(); }

    void provide(std::size_t memory) {
        m_requests.reset();
        m_provider = std::make_shared<ThumbnailProvider>(
            ThumbnailProvider::Options{m_folder / "cache/thumbnails", 1, memory, m_library.loader()});
        m_requests = requests();
    }
    std::unique_ptr<ThumbnailRequests> requests() {
        return std::make_unique<ThumbnailRequests>(
            m_provider, m_queue.executor(), [this](const Uuid& id, int maxPixel, const Thumbnail& thumbnail) {
                m_order.push_back(id);
                m_ready[id] = thumbnail;
                m_size = maxPixel;
            });
    }
    void await(std::size_t count) {
        m_queue.runUntil([&] { return m_order.size() >= count; });
    }
    Thumbnail thumbnail(const PhotoRef& photo, int maxPixel = 64) {
        const Uuid id = Uuid::random();
        m_requests->request(id, photo, maxPixel);
        m_queue.runUntil([&] { return m_ready.contains(id); });
        return m_ready[id];
    }
    void requestLibrary(int number) {
        m_requests->request(TestPhotos::uuid(number), LibraryPhotoRef{std::to_string(number)}, 32);
    }
    std::set<std::string> cached() const {
        std::set<std::string> names;
        if (fs::exists(m_folder / "cache/thumbnails")) {
            for (const auto& entry : fs::directory_iterator{m_folder / "cache/thumbnails"})
                names.insert(entry.path().filename());
        }
        return names;
    }

    TemporaryFolder m_folder;
    GatedLibrary m_library;
    Jobs::ActionQueue m_queue;
    std::shared_ptr<ThumbnailProvider> m_provider;
    std::unique_ptr<ThumbnailRequests> m_requests;
    std::vector<Uuid> m_order;
    std::map<Uuid, Thumbnail> m_ready;
    int m_size = 0;
};

TEST_F(ThumbnailRequestsTest, DeliversAFilesThumbnailAndHasItInMemoryThen) {
    const PhotoRef photo =
        bookmarked(TestPhotos::write(m_folder / "a.jpg", {.width = 320, .height = 240, .colour = 0xFF0000}));
    EXPECT_EQ(m_requests->find(photo, 128), std::nullopt);
    EXPECT_TRUE(cached().empty()) << "the folder is made by the first write";
    const Thumbnail image = thumbnail(photo, 128);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 128);
    EXPECT_EQ(image->height, 96);
    EXPECT_EQ(m_size, 128);
    EXPECT_EQ(m_requests->find(photo, 128), image);
    EXPECT_EQ(cached().size(), 1U);
}

TEST_F(ThumbnailRequestsTest, AnotherRunTakesItFromTheDisk) {
    const fs::path file = TestPhotos::write(m_folder / "a.jpg", {.width = 320, .height = 240});
    const PhotoRef photo = bookmarked(file);
    ASSERT_TRUE(thumbnail(photo));
    // The cache's file shows that it is asked: it holds something else now.
    const std::string name = *cached().begin();
    TestPhotos::write(m_folder / "cache/thumbnails" / name, {.width = 64, .height = 48, .colour = 0x0000FF});
    provide(1 << 20);
    const Thumbnail again = thumbnail(photo);
    ASSERT_TRUE(again);
    EXPECT_GT(middle(again) & 0xFF, 0xF0U);
    EXPECT_LT(middle(again) >> 16, 0x10U);
}

TEST_F(ThumbnailRequestsTest, AChangedFileGivesANewThumbnail) {
    const fs::path file = m_folder / "a.jpg";
    const PhotoRef photo = bookmarked(TestPhotos::write(file, {.colour = 0xFF0000}));
    EXPECT_GT(middle(thumbnail(photo)) >> 16, 0xF0U);
    TestPhotos::write(file, {.colour = 0x0000FF});
    fs::last_write_time(file, fs::file_time_type::clock::now() + std::chrono::hours{1});
    EXPECT_GT(middle(thumbnail(photo)) & 0xFF, 0xF0U);
    EXPECT_EQ(cached().size(), 2U);
}

TEST_F(ThumbnailRequestsTest, AFileThatIsFoundAgainAfterARenameHasAThumbnail) {
    const PhotoRef photo = bookmarked(TestPhotos::write(m_folder / "trip/a.jpg"));
    fs::rename(m_folder / "trip/a.jpg", m_folder / "trip/b.jpg");
    EXPECT_TRUE(thumbnail(photo));
}

TEST_F(ThumbnailRequestsTest, APhotoWithoutAPictureIsAnsweredAndRememberedUntilItMayBeBack) {
    const fs::path file = TestPhotos::write(m_folder / "a.jpg");
    const PhotoRef photo = bookmarked(file);
    fs::remove(file);
    EXPECT_EQ(thumbnail(photo), nullptr);
    EXPECT_EQ(m_requests->find(photo, 64), Thumbnail{});
    TestPhotos::write(file);
    m_provider->forgetMissing();
    EXPECT_EQ(m_requests->find(photo, 64), std::nullopt);
    EXPECT_TRUE(thumbnail(photo));
}

TEST_F(ThumbnailRequestsTest, ALibraryPhotoThatIsGoneIsAnsweredToo) {
    m_library.open();
    EXPECT_EQ(thumbnail(LibraryPhotoRef{"none"}), nullptr);
}

TEST_F(ThumbnailRequestsTest, TheNewestRequestComesFirst) {
    requestLibrary(0);
    m_library.awaitRequests(1); // the worker is busy with it from here on
    for (int number = 1; number <= 4; ++number)
        requestLibrary(number);
    requestLibrary(2); // again: it is the newest now
    m_library.open();
    await(5);
    EXPECT_THAT(m_library.asked(), ElementsAre("0", "2", "4", "3", "1"));
}

TEST_F(ThumbnailRequestsTest, WhatScrolledAwayIsNeitherMadeNorDelivered) {
    requestLibrary(0);
    m_library.awaitRequests(1);
    for (int number = 1; number <= 4; ++number)
        requestLibrary(number);
    const std::array<Uuid, 2> visible{TestPhotos::uuid(2), TestPhotos::uuid(3)};
    m_requests->keepOnly(visible);
    m_library.open();
    await(2);
    EXPECT_THAT(m_order, ElementsAre(TestPhotos::uuid(3), TestPhotos::uuid(2)));
    // The one that was being made is kept in memory all the same.
    EXPECT_THAT(m_library.asked(), ElementsAre("0", "3", "2"));
    EXPECT_TRUE(m_requests->find(LibraryPhotoRef{"0"}, 32));
    m_queue.runPending();
    EXPECT_EQ(m_order.size(), 2U);
}

TEST_F(ThumbnailRequestsTest, WhatIsOnItsWayIsNotDeliveredOnceDropped) {
    m_library.open();
    requestLibrary(1);
    m_library.awaitRequests(1);
    // Answers come in order, so that the second one's arrival means that the first one's is waiting.
    bool second = false;
    ThumbnailRequests other{m_provider,
                            [&](std::function<void()>) { m_queue.post([&second] { second = true; }); },
                            [](const Uuid&, int, const Thumbnail&) {}};
    other.request(TestPhotos::uuid(2), LibraryPhotoRef{"2"}, 32);
    m_library.awaitRequests(2);
    m_requests->keepOnly({});
    m_queue.runUntil([&] { return second; });
    m_queue.runPending();
    EXPECT_TRUE(m_order.empty());
}

TEST_F(ThumbnailRequestsTest, SeveralAskersAreServedByOneDecode) {
    const auto other = requests();
    requestLibrary(1);
    m_library.awaitRequests(1);
    other->request(TestPhotos::uuid(11), LibraryPhotoRef{"1"}, 32);
    m_requests->request(TestPhotos::uuid(12), LibraryPhotoRef{"1"}, 32);
    m_library.open();
    await(3);
    EXPECT_THAT(m_library.asked(), ElementsAre("1"));
    EXPECT_EQ(m_ready[TestPhotos::uuid(1)], m_ready[TestPhotos::uuid(11)]);
    EXPECT_EQ(m_ready[TestPhotos::uuid(1)], m_ready[TestPhotos::uuid(12)]);
}

TEST_F(ThumbnailRequestsTest, OneAskerDropsNothingOfAnother) {
    const auto other = requests();
    requestLibrary(0);
    m_library.awaitRequests(1);
    requestLibrary(1);
    other->request(TestPhotos::uuid(11), LibraryPhotoRef{"1"}, 32);
    m_requests->keepOnly({});
    m_library.open();
    await(1);
    EXPECT_THAT(m_order, ElementsAre(TestPhotos::uuid(11)));
}

TEST_F(ThumbnailRequestsTest, AnotherSizeTakesThePlaceOfTheFirst) {
    requestLibrary(0);
    m_library.awaitRequests(1);
    m_requests->request(TestPhotos::uuid(1), LibraryPhotoRef{"1"}, 32);
    m_requests->request(TestPhotos::uuid(1), LibraryPhotoRef{"1"}, 48);
    m_library.open();
    await(2);
    EXPECT_EQ(m_ready[TestPhotos::uuid(1)]->width, 48);
    EXPECT_THAT(m_library.asked(), ElementsAre("0", "1"));
}

TEST_F(ThumbnailRequestsTest, NobodyHearsOfThemOnceTheOwnerIsGone) {
    requestLibrary(1);
    m_library.awaitRequests(1);
    m_requests.reset();
    m_library.open();
    m_provider.reset(); // waits for the decode under way
    m_queue.runPending();
    EXPECT_TRUE(m_order.empty());
}

TEST_F(ThumbnailRequestsTest, EndingWithThousandsOpenMakesNoneOfThem) {
    requestLibrary(0);
    m_library.awaitRequests(1);
    for (int number = 1; number < 5000; ++number)
        m_requests->request(Uuid::random(), LibraryPhotoRef{std::to_string(number)}, 32);
    m_requests.reset();
    m_library.open();
    m_provider.reset();
    EXPECT_THAT(m_library.asked(), ElementsAre("0"));
}

TEST_F(ThumbnailRequestsTest, ListenersMayEndTheirOwner) {
    m_library.open();
    auto requests = std::make_unique<std::unique_ptr<ThumbnailRequests>>();
    int calls = 0;
    *requests = std::make_unique<ThumbnailRequests>(m_provider, m_queue.executor(),
                                                    [&](const Uuid&, int, const Thumbnail&) {
                                                        ++calls;
                                                        requests->reset();
                                                    });
    (*requests)->request(TestPhotos::uuid(1), LibraryPhotoRef{"1"}, 32);
    m_queue.runUntil([&] { return calls == 1; });
    EXPECT_EQ(*requests, nullptr);
}

TEST_F(ThumbnailRequestsTest, APhotoInTheCacheWaitsForNoDecode) {
    const PhotoRef photo = bookmarked(TestPhotos::write(m_folder / "a.jpg", {.width = 320, .height = 240}));
    ASSERT_TRUE(thumbnail(photo));
    provide(1 << 20);
    requestLibrary(0);
    m_library.awaitRequests(1); // every decoder is busy for good
    EXPECT_TRUE(thumbnail(photo));
}

TEST_F(ThumbnailRequestsTest, WithoutALibraryItsPhotosHaveNone) {
    m_requests.reset();
    m_provider = std::make_shared<ThumbnailProvider>(
        ThumbnailProvider::Options{m_folder / "cache/thumbnails", 1, 1 << 20, {}});
    m_requests = requests();
    EXPECT_EQ(thumbnail(LibraryPhotoRef{"1"}), nullptr);
}

TEST_F(ThumbnailRequestsTest, ScrollingThroughTwentyThousandAnswersWhatIsKept) {
    m_library.open();
    constexpr int rows = 1000;
    constexpr int columns = 20;
    std::vector<Uuid> visible;
    for (int row = 0; row < rows; ++row) {
        visible.clear();
        for (int column = 0; column < columns; ++column) {
            const int number = row * columns + column;
            visible.push_back(TestPhotos::uuid(number));
            m_requests->request(visible.back(), LibraryPhotoRef{std::to_string(number)}, 8);
        }
        m_requests->keepOnly(visible);
    }
    m_queue.runUntil(
        [&] { return std::ranges::all_of(visible, [&](const Uuid& id) { return m_ready.contains(id); }); });
}

TEST(ThumbnailSizeTest, AFewSizesServeAll) {
    EXPECT_EQ(ThumbnailRequests::sizeFor(1), 128);
    EXPECT_EQ(ThumbnailRequests::sizeFor(128), 128);
    EXPECT_EQ(ThumbnailRequests::sizeFor(129), 256);
    EXPECT_EQ(ThumbnailRequests::sizeFor(500), 512);
    EXPECT_EQ(ThumbnailRequests::sizeFor(5000), 1024);
}

} // namespace
