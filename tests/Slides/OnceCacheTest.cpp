// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Slides/OnceCache.h>

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Cache = Slides::OnceCache<int, std::string>;

/// Asks for a key and counts how often it has to be made.
struct Counted {
    Cache cache;
    int made = 0;

    std::string get(int key) {
        return *cache.get(key, [&] {
            ++made;
            return std::make_shared<const std::string>(std::to_string(key));
        });
    }
};

TEST(OnceCacheTest, MakesEachResultOnce) {
    Counted counted{Cache(3)};
    EXPECT_EQ(counted.get(7), "7");
    EXPECT_EQ(counted.get(7), "7");
    EXPECT_EQ(counted.made, 1);
}

TEST(OnceCacheTest, EvictsTheLeastRecentlyUsed) {
    Counted counted{Cache(2)};
    counted.get(1);
    counted.get(2);
    counted.get(1);
    counted.get(3); // Puts out 2, the least recently used.
    EXPECT_EQ(counted.made, 3);
    counted.get(1);
    EXPECT_EQ(counted.made, 3);
    counted.get(2);
    EXPECT_EQ(counted.made, 4);
}

TEST(OnceCacheTest, ALimitOfZeroKeepsNothing) {
    Counted counted{Cache(0)};
    EXPECT_EQ(counted.get(1), "1");
    EXPECT_EQ(counted.get(1), "1");
    EXPECT_EQ(counted.made, 2);
}

TEST(OnceCacheTest, AnAbsentResultIsNotKept) {
    Cache cache(2);
    EXPECT_EQ(cache.get(1, [] { return std::shared_ptr<const std::string>(); }), nullptr);
    EXPECT_NE(cache.get(1, [] { return std::make_shared<const std::string>("now"); }), nullptr);
}

TEST(OnceCacheTest, AnExceptionReachesTheCallerAndIsNotKept) {
    Cache cache(2);
    const auto fail = []() -> std::shared_ptr<const std::string> { throw std::runtime_error("no"); };
    EXPECT_THROW((void)cache.get(1, fail), std::runtime_error);
    EXPECT_NE(cache.get(1, [] { return std::make_shared<const std::string>("now"); }), nullptr);
}

TEST(OnceCacheTest, ThreadsThatAskAtTheSameTimeShareOneComputation) {
    constexpr int threads = 6;
    Cache cache(1);
    std::atomic<int> made = 0;
    std::latch haveAsked(threads);
    std::vector<std::shared_ptr<const std::string>> results(threads);
    {
        std::vector<std::jthread> workers;
        for (int i = 0; i < threads; ++i)
            workers.emplace_back([&, i] {
                haveAsked.count_down();
                results[static_cast<std::size_t>(i)] = cache.get(1, [&] {
                    ++made;
                    haveAsked.wait();
                    return std::make_shared<const std::string>("one");
                });
            });
    }
    EXPECT_EQ(made, 1);
    for (const auto& result : results)
        EXPECT_EQ(result, results.front());
}

TEST(OnceCacheTest, StaysConsistentUnderManyThreadsAndEvictions) {
    Cache cache(2);
    std::vector<std::jthread> workers;
    std::atomic<int> wrong = 0;
    for (int i = 0; i < 4; ++i)
        workers.emplace_back([&, i] {
            for (int n = 0; n < 2000; ++n) {
                const int key = (n * 7 + i) % 5;
                const auto make = [&] { return std::make_shared<const std::string>(std::to_string(key)); };
                if (*cache.get(key, make) != std::to_string(key))
                    ++wrong;
            }
        });
    workers.clear();
    EXPECT_EQ(wrong, 0);
}

} // namespace
