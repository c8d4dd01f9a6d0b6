// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "FakeClock.h"

#include <Analysis/LocationResolver.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <thread>

namespace Analysis {
namespace {

using ProjectModel::Coordinate;
using ProjectModel::Provenance;
using ProjectModel::ResolvedLocation;

/// Answers with what the test says, and counts.
class ScriptedGeocoder final : public ReverseGeocoding {
public:
    std::function<Placemark(int)> answer = [](int) { return Placemark{"Paris", "France"}; };
    int requests = 0;
    std::vector<double> times;
    Clock* clock = nullptr;

    [[nodiscard]] Placemark placemark(const Coordinate&, const std::stop_token&) override {
        if (clock)
            times.push_back(clock->now().count());
        return answer(++requests);
    }
};

class LocationResolverTest : public testing::Test {
protected:
    LocationResolverTest() { geocoder.clock = &clock; }

    /// A place in a cell of its own.
    static Coordinate cell(int number) { return {number / 10.0, 0}; }

    TemporaryFolder folder;
    GeocodeCache cache{folder / "geocode.json"};
    ScriptedGeocoder geocoder;
    FakeClock clock;
    LocationResolver resolver{cache, geocoder, 45, std::chrono::seconds(60), clock};
    const Coordinate paris{48.8566, 2.3522};
    const ResolvedLocation inParis{"Paris", "France", Provenance::geocoded};
};

TEST_F(LocationResolverTest, AsksOnceForOneCell) {
    EXPECT_EQ(resolver.resolve(paris), inParis);
    EXPECT_EQ(resolver.resolve({48.8566, 2.3482}), inParis);
    EXPECT_EQ(geocoder.requests, 1);
}

TEST_F(LocationResolverTest, YieldsACachedEntryUnchanged) {
    cache.store({"Home", std::nullopt, Provenance::user}, paris);
    EXPECT_EQ(resolver.resolve(paris), (ResolvedLocation{"Home", std::nullopt, Provenance::user}));
    EXPECT_EQ(geocoder.requests, 0);
}

TEST_F(LocationResolverTest, LetsFortyFiveRequestsGoAtOnceAndTheNextWaitUntilTheFirstIsAMinuteOld) {
    const double start = clock.now().count();
    for (int i = 0; i < 45; ++i)
        (void)resolver.resolve(cell(i));
    EXPECT_TRUE(clock.sleeps.empty());
    (void)resolver.resolve(cell(45));
    EXPECT_EQ(clock.sleeps, std::vector{60.0});
    EXPECT_EQ(geocoder.times.back(), start + 60);
}

TEST_F(LocationResolverTest, WaitsOnlyForWhatIsLeftOfTheWindow) {
    for (int i = 0; i < 45; ++i) {
        (void)resolver.resolve(cell(i));
        clock.advance(1);
    }
    (void)resolver.resolve(cell(45));
    EXPECT_EQ(clock.sleeps, std::vector{15.0});
    (void)resolver.resolve(cell(46));
    EXPECT_EQ(clock.sleeps, (std::vector{15.0, 1.0}));
}

TEST_F(LocationResolverTest, ForgetsRequestsThatAreExactlyAWindowOld) {
    for (int i = 0; i < 45; ++i)
        (void)resolver.resolve(cell(i));
    clock.advance(60);
    (void)resolver.resolve(cell(45));
    EXPECT_TRUE(clock.sleeps.empty());
}

TEST_F(LocationResolverTest, NeverLetsMoreThanTheQuotaGoInAnyWindow) {
    for (int i = 0; i < 500; ++i)
        (void)resolver.resolve(cell(i));
    for (std::size_t i = 45; i < geocoder.times.size(); ++i)
        EXPECT_GE(geocoder.times[i] - geocoder.times[i - 45], 60);
}

TEST_F(LocationResolverTest, DoesNotPaceWithoutAQuota) {
    LocationResolver without(cache, geocoder, 0, std::chrono::seconds(60), clock);
    LocationResolver below(cache, geocoder, -3, std::chrono::seconds(60), clock);
    LocationResolver noWindow(cache, geocoder, 1, std::chrono::seconds(0), clock);
    for (int i = 0; i < 100; ++i) {
        (void)without.resolve(cell(i));
        (void)below.resolve(cell(i + 100));
        (void)noWindow.resolve(cell(i + 200));
    }
    EXPECT_EQ(geocoder.requests, 300);
    EXPECT_TRUE(clock.sleeps.empty());
}

TEST_F(LocationResolverTest, DoesNotCountCachedAnswersAgainstTheQuota) {
    for (int i = 0; i < 100; ++i)
        (void)resolver.resolve(paris);
    for (int i = 0; i < 44; ++i)
        (void)resolver.resolve(cell(i));
    EXPECT_TRUE(clock.sleeps.empty());
}

TEST_F(LocationResolverTest, WaitsForTheResetTimeAndASecondThenTriesOnceMore) {
    geocoder.answer = [&](int request) {
        if (request == 1)
            throw GeocodingRateLimited(12.5);
        return Placemark{"Paris", "France"};
    };
    EXPECT_EQ(resolver.resolve(paris), inParis);
    EXPECT_EQ(clock.sleeps, std::vector{13.5});
    EXPECT_EQ(geocoder.requests, 2);
}

TEST_F(LocationResolverTest, WaitsAMinuteAtMost) {
    geocoder.answer = [](int) -> Placemark { throw GeocodingRateLimited(300); };
    EXPECT_EQ(resolver.resolve(paris), std::nullopt);
    EXPECT_EQ(clock.sleeps, std::vector{60.0});
    EXPECT_EQ(geocoder.requests, 2);
}

TEST_F(LocationResolverTest, WaitsOneSecondWhenNoResetTimeIsStated) {
    geocoder.answer = [](int) -> Placemark { throw GeocodingRateLimited(std::nullopt); };
    EXPECT_EQ(resolver.resolve(paris), std::nullopt);
    EXPECT_EQ(clock.sleeps, std::vector{1.0});
}

TEST_F(LocationResolverTest, DoesNotRetryAnyOtherFailure) {
    geocoder.answer = [](int) -> Placemark { throw GeocodingError("no network"); };
    EXPECT_EQ(resolver.resolve(paris), std::nullopt);
    geocoder.answer = [](int) -> Placemark { throw std::runtime_error("a bug"); };
    EXPECT_EQ(resolver.resolve(paris), std::nullopt);
    EXPECT_EQ(geocoder.requests, 2);
    EXPECT_TRUE(clock.sleeps.empty());
}

TEST_F(LocationResolverTest, CountsTheRetryAgainstTheQuota) {
    for (int i = 0; i < 44; ++i)
        (void)resolver.resolve(cell(i));
    geocoder.answer = [](int request) -> Placemark {
        if (request == 45)
            throw GeocodingRateLimited(9);
        return {};
    };
    (void)resolver.resolve(paris);
    EXPECT_EQ(clock.sleeps, (std::vector{10.0, 50.0}));
}

TEST_F(LocationResolverTest, DoesNotCacheFailures) {
    geocoder.answer = [](int request) {
        if (request == 1)
            throw GeocodingError("no network");
        return Placemark{"Paris", "France"};
    };
    EXPECT_EQ(resolver.resolve(paris), std::nullopt);
    EXPECT_EQ(resolver.resolve(paris), inParis);
}

TEST_F(LocationResolverTest, CachesAnAnswerThatHasACountryOnly) {
    geocoder.answer = [](int) { return Placemark{std::nullopt, "Chile"}; };
    const ResolvedLocation inChile{std::nullopt, "Chile", Provenance::geocoded};
    EXPECT_EQ(resolver.resolve(paris), inChile);
    EXPECT_EQ(cache.lookup(paris), inChile);
}

TEST_F(LocationResolverTest, CachesThatNothingIsThere) {
    geocoder.answer = [](int) { return Placemark{}; };
    const ResolvedLocation nowhere{std::nullopt, std::nullopt, Provenance::geocoded};
    EXPECT_EQ(resolver.resolve(paris), nowhere);
    EXPECT_EQ(resolver.resolve(paris), nowhere);
    EXPECT_EQ(geocoder.requests, 1);
}

TEST_F(LocationResolverTest, GivesCoordinatesThatAreNotOnEarthNoPlace) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const Coordinate& nowhere : {Coordinate{nan, 0}, Coordinate{0, nan}, Coordinate{infinity, 0},
                                      Coordinate{0, -infinity}, Coordinate{90.001, 0}, Coordinate{-91, 0},
                                      Coordinate{0, 180.5}, Coordinate{0, -181}, Coordinate{1e300, 1e300}})
        EXPECT_EQ(resolver.resolve(nowhere), std::nullopt);
    EXPECT_EQ(geocoder.requests, 0);
}

TEST_F(LocationResolverTest, TellsRefusalsFromOtherErrors) {
    EXPECT_EQ(LocationResolver::throttleResetSeconds(GeocodingRateLimited(12.5)), 12.5);
    EXPECT_EQ(LocationResolver::throttleResetSeconds(GeocodingRateLimited(std::nullopt)), 0.0);
    EXPECT_EQ(LocationResolver::throttleResetSeconds(GeocodingError("other")), std::nullopt);
    EXPECT_EQ(LocationResolver::throttleResetSeconds(std::runtime_error("other")), std::nullopt);
}

TEST(ContinuousClockTest, ShowsTheEndOfASleepOrLaterWhenItWakes) {
    ContinuousClock clock;
    // Of the clock's own hands: true however slow the machine is.
    const Clock::Duration end = clock.now() + std::chrono::milliseconds(30);
    clock.sleep(std::chrono::milliseconds(30), {});
    EXPECT_GE(clock.now(), end);
}

TEST(ContinuousClockTest, NeverBeginsASleepThatIsNoTime) {
    ContinuousClock clock;
    const Clock::Duration start = clock.now();
    clock.sleep(std::chrono::seconds(-5), {});
    clock.sleep(Clock::Duration(std::numeric_limits<double>::quiet_NaN()), {});
    EXPECT_GE(clock.now(), start);
}

TEST(ContinuousClockTest, WakesUpWhenStopped) {
    ContinuousClock clock;
    std::stop_source stop;
    const Clock::Duration end = clock.now() + std::chrono::hours(24);
    std::jthread stopper([&] { stop.request_stop(); });
    clock.sleep(std::chrono::hours(24), stop.get_token());
    EXPECT_LT(clock.now(), end);
}

} // namespace
} // namespace Analysis
