// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Roamly/Jobs/ActionQueue.h>
#include <Roamly/Jobs/PhotoFileCheck.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

#include <latch>
#include <stdexcept>
#include <vector>

namespace {

using Jobs::PhotoFileCheck;
using Jobs::PhotoFileEnvironment;
using ProjectModel::PhotoItem;
using ProjectModel::PhotoRefresh;
using Refreshes = PhotoFileEnvironment::Refreshes;

/// Says of every photo that it is missing, and of the chosen one that it is not.
PhotoFileEnvironment environment() {
    return {
        .check =
            [](PhotoFileEnvironment::Photos photos, const std::stop_token&) {
                Refreshes refreshes;
                for (const PhotoItem& photo : photos)
                    refreshes.push_back({photo.id, photo.source, photo.source, true});
                return refreshes;
            },
        .locate =
            [](PhotoFileEnvironment::Photos photos, const std::filesystem::path& chosen,
               const std::optional<Foundation::Uuid>& meant, const std::stop_token&) {
                Refreshes refreshes;
                for (const PhotoItem& photo : photos) {
                    if (meant == photo.id)
                        refreshes.push_back(
                            {photo.id, photo.source, TestPhotos::item(0, chosen).source, false});
                }
                return refreshes;
            },
    };
}

class PhotoFileCheckTest : public testing::Test {
protected:
    void runUntilIdle(const PhotoFileCheck& check) {
        m_queue.runUntil([&] { return !check.isRunning(); });
    }
    PhotoFileCheck::Found keep() {
        return [this](const Refreshes& refreshes) { m_found.push_back(refreshes); };
    }

    Jobs::ActionQueue m_queue;
    std::vector<PhotoItem> m_photos{TestPhotos::item(1), TestPhotos::item(2)};
    std::vector<Refreshes> m_found;
};

TEST_F(PhotoFileCheckTest, TellsWhatWasFound) {
    int changes = 0;
    PhotoFileCheck check{m_queue.executor(), environment(), [&] { ++changes; }};
    check.check(m_photos, keep());
    EXPECT_TRUE(check.isRunning());
    runUntilIdle(check);
    ASSERT_EQ(m_found.size(), 1U);
    EXPECT_EQ(m_found[0].size(), 2U);
    EXPECT_EQ(changes, 2);
}

TEST_F(PhotoFileCheckTest, LocatesTheOneThatIsMeant) {
    PhotoFileCheck check{m_queue.executor(), environment()};
    check.locate(m_photos, "/there.jpg", m_photos[1].id, keep());
    runUntilIdle(check);
    ASSERT_EQ(m_found.size(), 1U);
    ASSERT_EQ(m_found[0].size(), 1U);
    EXPECT_EQ(m_found[0][0].id, m_photos[1].id);
    EXPECT_EQ(m_found[0][0].source, TestPhotos::item(0, "/there.jpg").source);
}

TEST_F(PhotoFileCheckTest, ANewerSearchTakesThePlaceOfTheOneBefore) {
    std::latch begun{1};
    std::latch released{1};
    PhotoFileEnvironment slow = environment();
    slow.check = [&](PhotoFileEnvironment::Photos, const std::stop_token& stop) -> Refreshes {
        begun.count_down();
        released.wait();
        Foundation::throwIfStopped(stop);
        return {};
    };
    PhotoFileCheck check{m_queue.executor(), slow};
    check.check(m_photos, keep());
    begun.wait();
    check.locate(m_photos, "/there.jpg", m_photos[0].id, keep());
    released.count_down();
    runUntilIdle(check);
    m_queue.runPending();
    ASSERT_EQ(m_found.size(), 1U);
    EXPECT_EQ(m_found[0].size(), 1U);
}

TEST_F(PhotoFileCheckTest, NothingIsHeardOfACancelledOne) {
    PhotoFileCheck check{m_queue.executor(), environment()};
    check.check(m_photos, keep());
    check.cancel();
    EXPECT_FALSE(check.isRunning());
    check.check({}, keep());
    runUntilIdle(check);
    ASSERT_EQ(m_found.size(), 1U);
    EXPECT_TRUE(m_found[0].empty());
}

TEST_F(PhotoFileCheckTest, ASearchThatFailsEndsQuietly) {
    PhotoFileEnvironment broken = environment();
    broken.check = [](PhotoFileEnvironment::Photos, const std::stop_token&) -> Refreshes {
        throw std::runtime_error("The disk fell off.");
    };
    PhotoFileCheck check{m_queue.executor(), broken};
    check.check(m_photos, keep());
    runUntilIdle(check);
    EXPECT_TRUE(m_found.empty());
}

} // namespace
