// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/GeocodeCache.h>
#include <Foundation/AtomicFile.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <limits>
#include <random>

namespace Analysis {
namespace {

using ProjectModel::Coordinate;
using ProjectModel::Provenance;
using ProjectModel::ResolvedLocation;

const Coordinate paris{48.8566, 2.3522};
const ResolvedLocation inParis{"Paris", "France", Provenance::geocoded};

void write(const std::filesystem::path& file, const std::string& text) {
    std::ofstream(file, std::ios::binary) << text;
}

TEST(GeocodeCacheTest, NamesCellsByHundredthsOfADegree) {
    EXPECT_EQ(GeocodeCache::gridKey(paris), "4886,235");
    EXPECT_EQ(GeocodeCache::gridKey({-33.8688, 151.2093}), "-3387,15121");
    EXPECT_EQ(GeocodeCache::gridKey({-90, 180}), "-9000,18000");
}

TEST(GeocodeCacheTest, RoundsHalvesAwayFromZeroAndNeverWritesMinusZero) {
    EXPECT_EQ(GeocodeCache::gridKey({0.005, -0.005}), "1,-1");
    EXPECT_EQ(GeocodeCache::gridKey({0.0049, -0.0001}), "0,0");
    EXPECT_EQ(GeocodeCache::gridKey({-0.0, -0.0049}), "0,0");
}

TEST(GeocodeCacheDeathTest, StopsTheProgramAtWhatIsNoCoordinate) {
    EXPECT_DEATH((void)GeocodeCache::gridKey({std::numeric_limits<double>::quiet_NaN(), 0}),
                 "not a coordinate");
    EXPECT_DEATH((void)GeocodeCache::gridKey({0, std::numeric_limits<double>::infinity()}),
                 "not a coordinate");
    EXPECT_DEATH((void)GeocodeCache::gridKey({1e300, 0}), "not a coordinate");
}

TEST(GeocodeCacheTest, AnswersForTheWholeCell) {
    const TemporaryFolder folder;
    GeocodeCache cache(folder / "geocode.json");
    EXPECT_EQ(cache.lookup(paris), std::nullopt);
    cache.store(inParis, paris);
    EXPECT_EQ(cache.lookup({48.8601, 2.3549}), inParis);
    EXPECT_EQ(cache.lookup({48.8651, 2.3549}), std::nullopt);
}

TEST(GeocodeCacheTest, ReplacesAnEarlierEntry) {
    const TemporaryFolder folder;
    GeocodeCache cache(folder / "geocode.json");
    cache.store({"Lutetia", "Gaul", Provenance::geocoded}, paris);
    cache.store(inParis, paris);
    EXPECT_EQ(cache.lookup(paris), inParis);
}

TEST(GeocodeCacheTest, RemembersAcrossRunsAlsoWhatHasNoName) {
    const TemporaryFolder folder;
    const auto file = folder / "new/folders/geocode.json";
    {
        GeocodeCache cache(file);
        cache.store(inParis, paris);
        cache.store({std::nullopt, "Chile", Provenance::geocoded}, {-50, -73});
        cache.store({std::nullopt, std::nullopt, Provenance::geocoded}, {0, -30});
        cache.persist();
    }
    const GeocodeCache cache(file);
    EXPECT_EQ(cache.lookup(paris), inParis);
    EXPECT_EQ(cache.lookup({-50, -73}), (ResolvedLocation{std::nullopt, "Chile", Provenance::geocoded}));
    EXPECT_EQ(cache.lookup({0, -30}), (ResolvedLocation{std::nullopt, std::nullopt, Provenance::geocoded}));
}

TEST(GeocodeCacheTest, WritesOneObjectOfGridKeysWithAbsentNamesLeftOut) {
    const TemporaryFolder folder;
    GeocodeCache cache(folder / "geocode.json");
    cache.store({"Saint-\"Tro\"pez", std::nullopt, Provenance::geocoded}, paris);
    cache.persist();
    EXPECT_EQ(Foundation::readFile(folder / "geocode.json"),
              R"({"4886,235":{"city":"Saint-\"Tro\"pez","provenance":"geocoded"}})");
}

TEST(GeocodeCacheTest, StartsEmptyFromGarbageAndReplacesItWithAValidObject) {
    const TemporaryFolder folder;
    const auto file = folder / "geocode.json";
    for (const std::string garbage :
         {"[]", "", "garbage", "{", "null", "3", R"("text")", R"({"4886,235":[]})", R"({"4886,235":{}})",
          R"({"4886,235":{"city":3,"provenance":"geocoded"}})", R"({"4886,235":{"provenance":"guessed"}})",
          R"({"4886,235":{"provenance":7}})", "\xff\xfe", "{\"4886,235\":{\"city\":\"\xff\"}}",
          R"({"1,1":{"provenance":"geocoded"},"4886,235":null})"}) {
        write(file, garbage);
        const GeocodeCache cache(file);
        EXPECT_EQ(cache.lookup(paris), std::nullopt) << garbage;
        EXPECT_EQ(cache.lookup({0.01, 0.01}), std::nullopt) << garbage;
        cache.persist();
        EXPECT_EQ(nlohmann::json::parse(Foundation::readFile(file)), nlohmann::json::object()) << garbage;
    }
}

TEST(GeocodeCacheTest, AcceptsNullForAbsentAndMembersItDoesNotKnow) {
    const TemporaryFolder folder;
    write(folder / "geocode.json",
          R"({"4886,235":{"city":null,"country":"France","provenance":"geocoded","street":1}})");
    EXPECT_EQ(GeocodeCache(folder / "geocode.json").lookup(paris),
              (ResolvedLocation{std::nullopt, "France", Provenance::geocoded}));
}

TEST(GeocodeCacheTest, IgnoresThatTheFileCannotBeWritten) {
    const TemporaryFolder folder;
    write(folder / "file", "x");
    GeocodeCache cache(folder / "file/geocode.json");
    cache.store(inParis, paris);
    cache.persist();
    EXPECT_EQ(cache.lookup(paris), inParis);
}

TEST(GeocodeCacheTest, IgnoresATextThatCannotBeEncodedAndKeepsTheOldFile) {
    const TemporaryFolder folder;
    GeocodeCache cache(folder / "geocode.json");
    cache.store(inParis, paris);
    cache.persist();
    const std::string before = Foundation::readFile(folder / "geocode.json");
    cache.store({"\xff", std::nullopt, Provenance::geocoded}, {1, 1});
    cache.persist();
    EXPECT_EQ(Foundation::readFile(folder / "geocode.json"), before);
}

TEST(GeocodeCacheTest, SurvivesAnyDamageToItsFile) {
    const TemporaryFolder folder;
    const auto file = folder / "geocode.json";
    GeocodeCache original(file);
    original.store(inParis, paris);
    original.store({"Zürich", "Switzerland", Provenance::geocoded}, {47.37, 8.54});
    original.persist();
    const std::string good = Foundation::readFile(file);
    std::mt19937 random(3);
    for (int round = 0; round < 300; ++round) {
        std::string damaged = good;
        for (int i = 0; i < 3; ++i)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        damaged.resize(random() % (damaged.size() + 1));
        write(file, damaged);
        EXPECT_NO_THROW((void)GeocodeCache(file).lookup(paris));
    }
}

} // namespace
} // namespace Analysis
