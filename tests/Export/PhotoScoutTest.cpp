// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/PhotoScout.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <stdexcept>
#include <vector>

namespace {

using Export::PhotoScout;
using testing::ElementsAre;

/// Remembers what was drawn.
class Sketchbook {
public:
    void draw(std::int64_t frame) {
        {
            const std::lock_guard lock(m_mutex);
            m_frames.push_back(frame);
        }
        m_hasGrown.notify_all();
    }
    /// Waits until there are that many.
    std::vector<std::int64_t> frames(std::size_t count) {
        std::unique_lock lock(m_mutex);
        m_hasGrown.wait(lock, [&] { return m_frames.size() >= count; });
        return m_frames;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_hasGrown;
    std::vector<std::int64_t> m_frames;
};

TEST(PhotoScoutTest, DrawsTheNextPhotoAsSoonAsOneBegins) {
    Sketchbook book;
    PhotoScout scout({0, 100, 200, 300}, 30, [&](std::int64_t frame) { book.draw(frame); });
    scout.reach(0);
    EXPECT_THAT(book.frames(1), ElementsAre(100));
    scout.reach(50);
    scout.reach(100);
    EXPECT_THAT(book.frames(2), ElementsAre(100, 200));
    scout.reach(99);
    scout.reach(200);
    EXPECT_THAT(book.frames(3), ElementsAre(100, 200, 300));
}

TEST(PhotoScoutTest, DoesNothingBeforeTheFirstPhoto) {
    Sketchbook book;
    std::atomic<bool> hasBegun = false;
    std::atomic<bool> wasEarly = false;
    PhotoScout scout({90, 200}, 30, [&](std::int64_t frame) {
        wasEarly = wasEarly || !hasBegun;
        book.draw(frame);
    });
    for (int frame = 0; frame < 90; ++frame)
        scout.reach(frame);
    hasBegun = true;
    scout.reach(90);
    EXPECT_THAT(book.frames(1), ElementsAre(200));
    EXPECT_FALSE(wasEarly);
}

TEST(PhotoScoutTest, LeavesPhotosAloneThatFollowQuicklyOrHaveBegun) {
    Sketchbook book;
    PhotoScout scout({0, 10, 110, 210, 310}, 30, [&](std::int64_t frame) { book.draw(frame); });
    scout.reach(150);
    EXPECT_THAT(book.frames(1), ElementsAre(210));
    scout.reach(215);
    EXPECT_THAT(book.frames(2), ElementsAre(210, 310));
}

TEST(PhotoScoutTest, DropsWhatTheDrawingThrowsAndGoesOn) {
    Sketchbook book;
    PhotoScout scout({0, 100, 200}, 30, [&](std::int64_t frame) {
        book.draw(frame);
        throw std::runtime_error("no photo");
    });
    scout.reach(0);
    static_cast<void>(book.frames(1));
    scout.reach(100);
    EXPECT_THAT(book.frames(2), ElementsAre(100, 200));
}

TEST(PhotoScoutTest, GoesAwayWhilePhotosAreLeft) {
    for (int i = 0; i < 100; ++i) {
        Sketchbook book;
        {
            PhotoScout scout({0, 100, 200}, 30, [&](std::int64_t frame) { book.draw(frame); });
            scout.reach(i % 2 ? 0 : -1);
        }
        // It may have gone before it looked; the photo after the next is not drawn in any case.
        EXPECT_LE(book.frames(0).size(), i % 2 ? 1U : 0U);
    }
}

} // namespace
