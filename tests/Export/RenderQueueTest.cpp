// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportError.h>
#include <Export/RenderQueue.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <latch>
#include <memory>
#include <stdexcept>
#include <stop_token>
#include <thread>
#include <vector>

namespace {

using namespace Export;
using Frame = std::shared_ptr<const Frames::YuvFrame>;

Frame numbered(std::int64_t index) {
    auto frame = std::make_shared<Frames::YuvFrame>(Frames::FrameSize{16, 16});
    frame->plane(0)[0] = static_cast<std::uint8_t>(index);
    frame->plane(0)[1] = static_cast<std::uint8_t>(index >> 8);
    return frame;
}

std::int64_t numberOf(const Frames::YuvFrame& frame) {
    return frame.plane(0)[0] + 256 * frame.plane(0)[1];
}

TEST(RenderQueueTest, HandsFramesOutInOrderHoweverLongEachTakes) {
    // Each frame of an even number takes as long as the next one and more.
    std::vector<std::atomic<bool>> isDrawn(501);
    isDrawn[500] = true;
    RenderQueue queue(500, 4, 7, [&](std::int64_t index) {
        const auto number = static_cast<std::size_t>(index);
        if (number % 2 == 0)
            isDrawn[number + 1].wait(false);
        isDrawn[number] = true;
        isDrawn[number].notify_all();
        return numbered(index);
    });
    for (int i = 0; i < 500; ++i)
        EXPECT_EQ(numberOf(*queue.next({})), i);
}

TEST(RenderQueueTest, RendersEveryFrameOnceAndNotFurtherAheadThanItsCapacity) {
    std::atomic<std::int64_t> handedOut = 0;
    std::atomic<int> calls = 0;
    std::atomic<bool> isTooFar = false;
    RenderQueue queue(200, 3, 5, [&](std::int64_t index) {
        // One frame more has left the queue than has been counted here, at the most.
        if (index >= handedOut + 1 + 5)
            isTooFar = true;
        ++calls;
        return numbered(index);
    });
    for (int i = 0; i < 200; ++i) {
        const Frame frame = queue.next({});
        ++handedOut;
    }
    EXPECT_FALSE(isTooFar);
    EXPECT_EQ(calls, 200);
}

TEST(RenderQueueTest, RendersAheadWhileNobodyTakes) {
    std::latch ahead(5);
    RenderQueue queue(100, 2, 5, [&](std::int64_t index) {
        ahead.count_down();
        return numbered(index);
    });
    ahead.wait();
    EXPECT_EQ(numberOf(*queue.next({})), 0);
}

TEST(RenderQueueTest, OneFailureEndsAllAtOnceAndIsHandedOn) {
    std::atomic<int> calls = 0;
    RenderQueue queue(1000000, 3, 8, [&](std::int64_t index) -> Frame {
        ++calls;
        if (index == 20)
            throw std::runtime_error("frame 20");
        return numbered(index);
    });
    const auto takeAll = [&] {
        while (true)
            static_cast<void>(queue.next({}));
    };
    EXPECT_THROW(takeAll(), std::runtime_error);
    EXPECT_THROW(static_cast<void>(queue.next({})), std::runtime_error);
    EXPECT_LT(calls, 20 + 1 + 8 + 8);
}

TEST(RenderQueueTest, FrameThatCannotBeDrawnIsAnAppendFailure) {
    RenderQueue queue(3, 1, 2, [](std::int64_t) { return Frame(); });
    try {
        static_cast<void>(queue.next({}));
        FAIL() << "no failure";
    } catch (const ExportError& error) {
        EXPECT_EQ(error.kind(), ExportError::Kind::appendFailed);
    }
}

TEST(RenderQueueTest, StopEndsTheWaitForASlowFrame) {
    std::latch hasBegun(1);
    std::latch mayFinish(1);
    RenderQueue queue(1, 1, 2, [&](std::int64_t index) {
        hasBegun.count_down();
        mayFinish.wait();
        return numbered(index);
    });
    std::stop_source stop;
    std::jthread user([&] {
        hasBegun.wait();
        stop.request_stop();
    });
    try {
        static_cast<void>(queue.next(stop.get_token()));
        FAIL() << "not stopped";
    } catch (const ExportError& error) {
        EXPECT_EQ(error.kind(), ExportError::Kind::cancelled);
    }
    mayFinish.count_down();
}

TEST(RenderQueueTest, GoesAwayWithFramesLeftOnceThoseInWorkAreDrawn) {
    for (int i = 0; i < 200; ++i) {
        std::atomic<int> begun = 0;
        std::atomic<int> drawn = 0;
        {
            RenderQueue queue(1000, 4, 6, [&](std::int64_t index) {
                ++begun;
                Frame frame = numbered(index);
                ++drawn;
                return frame;
            });
            for (int taken = 0; taken < i % 9; ++taken)
                EXPECT_EQ(numberOf(*queue.next({})), taken);
        }
        EXPECT_EQ(drawn, begun);
        EXPECT_LE(drawn, i % 9 + 6);
    }
}

TEST(RenderQueueTest, CapacityBelowTheNumberOfWorkersIsEnough) {
    RenderQueue queue(100, 8, 1, numbered);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(numberOf(*queue.next({})), i);
}

} // namespace
