// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Roamly/Jobs/ActionQueue.h>
#include <Roamly/Jobs/Job.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <latch>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace Jobs;
using testing::ElementsAre;

/// A job whose listener writes down what reaches it.
class JobTest : public testing::Test {
protected:
    Job::Ended ended(const std::string& name) {
        return [this, name](const Job::Ending& ending) {
            events.push_back(name + (ending.wasStopped ? " stopped" : " ended") +
                             (ending.failure ? ": " + *ending.failure : ""));
        };
    }
    /// Works until it is asked to stop.
    Job::Work untilStopped(const std::string& name, std::latch& begun) {
        return [this, name, &begun](const Job::Run& run) {
            std::latch stopped{1};
            const std::stop_callback wake{run.stop(), [&] { stopped.count_down(); }};
            run.post([this, name] { events.push_back(name + " begun"); });
            begun.count_down();
            stopped.wait();
            run.post([this, name] { events.push_back(name + " late report"); });
            return [this, name] { events.push_back(name + " landed"); };
        };
    }
    Job::Work atOnce(const std::string& name) {
        return [this, name](const Job::Run& run) {
            run.post([this, name] { events.push_back(name + " report"); });
            return [this, name] { events.push_back(name + " landed"); };
        };
    }
    void runUntilIdle(const Job& job) {
        queue.runUntil([&] { return !job.isRunning(); });
    }

    ActionQueue queue;
    std::vector<std::string> events;
};

TEST_F(JobTest, ReportsThenLandsThenEndsOnTheOwnersThread) {
    Job job{queue.executor(), Job::WhenStopped::RunOut};
    const std::thread::id owner = std::this_thread::get_id();
    std::vector<std::thread::id> threads;
    std::thread::id worker;
    EXPECT_TRUE(job.start(
        [&](const Job::Run& run) {
            worker = std::this_thread::get_id();
            run.post([&] { threads.push_back(std::this_thread::get_id()); });
            return [&] { threads.push_back(std::this_thread::get_id()); };
        },
        [&](const Job::Ending&) { threads.push_back(std::this_thread::get_id()); }));
    runUntilIdle(job);
    EXPECT_THAT(threads, ElementsAre(owner, owner, owner));
    EXPECT_NE(worker, owner);
}

TEST_F(JobTest, RunsOneWorkAtATime) {
    Job job{queue.executor(), Job::WhenStopped::RunOut};
    EXPECT_TRUE(job.start(atOnce("first"), ended("first")));
    EXPECT_FALSE(job.start(atOnce("second"), ended("second")));
    runUntilIdle(job);
    EXPECT_THAT(events, ElementsAre("first report", "first landed", "first ended"));
}

TEST_F(JobTest, AFailureIsOneSentenceAndNothingLands) {
    Job job{queue.executor(), Job::WhenStopped::RunOut};
    job.start([](const Job::Run&) -> Job::Landing { throw std::runtime_error("The disk is full."); },
              ended("it"));
    runUntilIdle(job);
    job.start([](const Job::Run&) -> Job::Landing { throw std::bad_alloc{}; }, ended("it"));
    runUntilIdle(job);
    job.start([](const Job::Run&) -> Job::Landing { throw 7; }, ended("it"));
    runUntilIdle(job);
    EXPECT_THAT(events, ElementsAre("it ended: The disk is full.", "it ended: There is not enough memory.",
                                    "it ended: Something unexpected happened."));
}

TEST_F(JobTest, AFailureWhileLandingIsToldToo) {
    Job job{queue.executor(), Job::WhenStopped::RunOut};
    job.start([](const Job::Run&) { return [] { throw std::runtime_error("No room."); }; }, ended("it"));
    runUntilIdle(job);
    EXPECT_THAT(events, ElementsAre("it ended: No room."));
}

TEST_F(JobTest, StoppedWorkThatRunsOutLandsWhatItHas) {
    Job job{queue.executor(), Job::WhenStopped::RunOut};
    std::latch begun{1};
    job.start(untilStopped("it", begun), ended("it"));
    begun.wait();
    EXPECT_TRUE(job.stop());
    EXPECT_FALSE(job.stop()) << "it was asked already";
    EXPECT_TRUE(job.isRunning());
    runUntilIdle(job);
    EXPECT_THAT(events, ElementsAre("it begun", "it late report", "it landed", "it stopped"));
}

TEST_F(JobTest, DroppedWorkEndsAtOnceAndIsNotHeardOfAgain) {
    Job job{queue.executor(), Job::WhenStopped::Drop};
    std::latch begun{1};
    job.start(untilStopped("it", begun), ended("it"));
    begun.wait();
    queue.runPending();
    EXPECT_TRUE(job.stop());
    EXPECT_FALSE(job.isRunning());
    EXPECT_THAT(events, ElementsAre("it begun", "it stopped"));
    job.start(atOnce("next"), ended("next"));
    runUntilIdle(job);
    EXPECT_THAT(events, ElementsAre("it begun", "it stopped", "next report", "next landed", "next ended"));
}

TEST_F(JobTest, ANewRunAfterADroppedOneIsNotMarkedByTheOldOnesEnd) {
    Job job{queue.executor(), Job::WhenStopped::Drop};
    std::latch begun{1};
    job.start(untilStopped("old", begun), ended("old"));
    begun.wait();
    job.stop();
    std::latch newBegun{1};
    job.start(untilStopped("new", newBegun), ended("new"));
    // The old work is waited for on the new work's thread, so that all it posted is in the queue by now.
    newBegun.wait();
    queue.runPending();
    EXPECT_TRUE(job.isRunning());
    EXPECT_THAT(events, ElementsAre("old stopped", "new begun"));
}

TEST_F(JobTest, CancelledWorkIsNoFailureEvenWhenNobodyAsked) {
    Job job{queue.executor(), Job::WhenStopped::RunOut};
    job.start([](const Job::Run&) -> Job::Landing { throw Foundation::Cancelled{}; }, ended("it"));
    runUntilIdle(job);
    EXPECT_THAT(events, ElementsAre("it stopped"));
}

TEST_F(JobTest, WhatIsPostedAfterTheOwnersDeathReachesNobody) {
    std::latch begun{1};
    {
        Job job{queue.executor(), Job::WhenStopped::RunOut};
        job.start(untilStopped("it", begun), ended("it"));
        begun.wait();
    }
    queue.runPending();
    EXPECT_TRUE(events.empty());
}

TEST_F(JobTest, TheOwnerMayEndInItsListener) {
    auto job = std::make_unique<Job>(queue.executor(), Job::WhenStopped::RunOut);
    bool isOver = false;
    job->start(atOnce("it"), [&](const Job::Ending&) {
        job.reset();
        isOver = true;
    });
    queue.runUntil([&] { return isOver; });
    EXPECT_FALSE(job);
}

TEST_F(JobTest, TheListenerMayBeginTheNextRun) {
    Job job{queue.executor(), Job::WhenStopped::RunOut};
    job.start(atOnce("first"), [&](const Job::Ending&) { job.start(atOnce("second"), ended("second")); });
    runUntilIdle(job);
    EXPECT_THAT(events, ElementsAre("first report", "first landed", "second report", "second landed",
                                    "second ended"));
}

TEST(ActionQueueTest, CarriesOutInTheOrderOfThePosts) {
    ActionQueue queue;
    std::vector<int> order;
    for (int i = 0; i < 3; ++i)
        queue.post([&order, i] { order.push_back(i); });
    queue.runPending();
    EXPECT_THAT(order, ElementsAre(0, 1, 2));
}

TEST(ActionQueueTest, WhatAnActionPostsWaitsForTheNextTime) {
    ActionQueue queue;
    int count = 0;
    queue.post([&] { queue.post([&] { ++count; }); });
    queue.runPending();
    EXPECT_EQ(count, 0);
    queue.runPending();
    EXPECT_EQ(count, 1);
}

TEST(ActionQueueTest, AnActionThatThrowsLeavesTheOthers) {
    ActionQueue queue;
    bool isDone = false;
    queue.post([] { throw std::runtime_error("x"); });
    queue.post([&] { isDone = true; });
    EXPECT_THROW(queue.runUntil([&] { return isDone; }), std::runtime_error);
    queue.runUntil([&] { return isDone; });
    EXPECT_TRUE(isDone);
}

} // namespace
