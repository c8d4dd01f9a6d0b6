// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "KnownPlaces.h"

#include <Analysis/OfflineReverseGeocoder.h>
#include <Support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <random>

namespace Analysis {
namespace {

class OfflineReverseGeocoderTest : public testing::Test {
protected:
    static OfflineReverseGeocoder& geocoder() {
        static OfflineReverseGeocoder shared(ROAMLY_GAZETTEER, ROAMLY_LAND_BORDERS);
        return shared;
    }
    static Placemark at(double latitude, double longitude) {
        return geocoder().placemark({latitude, longitude});
    }
};

TEST_F(OfflineReverseGeocoderTest, AgreesWithPeopleOnWellKnownPlaces) {
    const auto places = readKnownPlaces(ROAMLY_TEST_DATA "/places.tsv");
    ASSERT_GE(places.size(), 1200U);
    std::size_t cities = 0;
    std::size_t countries = 0;
    for (const KnownPlace& place : places) {
        const Placemark found = geocoder().placemark(place.coordinate);
        const bool cityRight = isAccepted(place.cities, found.city.value_or(""));
        const bool countryRight = isAccepted(place.countries, found.country.value_or(""));
        cities += cityRight ? 1 : 0;
        countries += countryRight ? 1 : 0;
        if (!cityRight || !countryRight)
            std::printf("%s: %s, %s\n", place.name.c_str(), found.city.value_or("-").c_str(),
                        found.country.value_or("-").c_str());
    }
    std::printf("%zu places: %zu cities and %zu countries as people say\n", places.size(), cities, countries);
    EXPECT_GE(static_cast<double>(cities), 0.975 * static_cast<double>(places.size()));
    EXPECT_GE(static_cast<double>(countries), 0.997 * static_cast<double>(places.size()));
}

TEST_F(OfflineReverseGeocoderTest, NamesTheCityRatherThanTheNearestSuburb) {
    EXPECT_EQ(at(48.8584, 2.2945), (Placemark{"Paris", "France"}));
    EXPECT_EQ(at(43.6045, 1.4440), (Placemark{"Toulouse", "France"}));
    EXPECT_EQ(at(51.8505, 5.8690), (Placemark{"Nijmegen", "Netherlands"}));
}

TEST_F(OfflineReverseGeocoderTest, LeavesSectionsOfTownsOut) {
    // Shibuya, Wan Chai, Queens.
    EXPECT_EQ(at(35.6595, 139.7005).city, "Tokyo");
    EXPECT_EQ(at(22.2783, 114.1747).city, "Hong Kong");
    EXPECT_EQ(at(40.7282, -73.7949).city, "New York");
}

TEST_F(OfflineReverseGeocoderTest, KeepsToTheCountryOfThePoint) {
    EXPECT_EQ(at(47.6634, 9.1757), (Placemark{"Konstanz", "Germany"}));
    EXPECT_EQ(at(47.6508, 9.1823), (Placemark{"Kreuzlingen", "Switzerland"}));
    EXPECT_EQ(at(47.5565, 7.5925), (Placemark{"Basel", "Switzerland"}));
    EXPECT_EQ(at(47.6020, 7.6177), (Placemark{"Weil am Rhein", "Germany"}));
    EXPECT_EQ(at(41.9022, 12.4568), (Placemark{"Vatican City", "Vatican City"}));
    EXPECT_EQ(at(41.9031, 12.4663), (Placemark{"Rome", "Italy"}));
    EXPECT_EQ(at(43.7392, 7.4271).country, "Monaco");
    EXPECT_EQ(at(43.7440, 7.4240), (Placemark{"Beausoleil", "France"}));
}

TEST_F(OfflineReverseGeocoderTest, NamesTerritoriesByTheirOwnNames) {
    EXPECT_EQ(at(22.2759, 114.1455).country, "Hong Kong");
    EXPECT_EQ(at(22.1976, 113.5409).country, "Macau");
    EXPECT_EQ(at(18.4655, -66.1057).country, "Puerto Rico");
    EXPECT_EQ(at(36.1248, -5.3454).country, "Gibraltar");
    EXPECT_EQ(at(35.8880, -5.3150), (Placemark{"Ceuta", "Spain"}));
}

TEST_F(OfflineReverseGeocoderTest, SaysWhatPeopleSayForCountries) {
    EXPECT_EQ(at(37.5796, 126.9770).country, "South Korea");
    EXPECT_EQ(at(50.0865, 14.4114).country, "Czechia");
    EXPECT_EQ(at(55.7539, 37.6208).country, "Russia");
    EXPECT_EQ(at(40.7580, -73.9855).country, "United States");
}

TEST_F(OfflineReverseGeocoderTest, NamesTheAreaFarFromTowns) {
    const Placemark fjord = at(-44.6414, 167.8974);
    EXPECT_EQ(fjord.country, "New Zealand");
    EXPECT_THAT(fjord.city.value_or(""), testing::HasSubstr("Southland"));
    const Placemark desert = at(-25.0, 125.0);
    EXPECT_EQ(desert, (Placemark{"Western Australia", "Australia"}));
}

TEST_F(OfflineReverseGeocoderTest, KnowsBordersToTheHundredMetres) {
    // Both sides of the falls, of a river between two towns, and of an enclave's fence.
    EXPECT_EQ(at(-25.6806, -54.4358), (Placemark{"Foz do Iguaçu", "Brazil"}));
    EXPECT_EQ(at(-25.6867, -54.4440), (Placemark{"Puerto Iguazú", "Argentina"}));
    EXPECT_EQ(at(40.1160, 124.3950).country, "China");
    EXPECT_EQ(at(45.9686, 8.9710).country, "Italy");
    EXPECT_EQ(at(43.9365, 12.4463), (Placemark{"San Marino", "San Marino"}));
}

TEST_F(OfflineReverseGeocoderTest, NamesTheNearBankOnABorderRiver) {
    EXPECT_EQ(at(47.5898, 7.5889), (Placemark{"Basel", "Switzerland"}));
}

TEST_F(OfflineReverseGeocoderTest, GoesDownTheInhabitedSideOfASummitOnTheBorder) {
    EXPECT_EQ(at(27.9881, 86.9250).country, "Nepal");
}

TEST_F(OfflineReverseGeocoderTest, NamesTheCapitalRatherThanItsSuburbs) {
    EXPECT_EQ(at(24.4128, 54.4750).city, "Abu Dhabi");
    EXPECT_EQ(at(26.1970, 56.2480).city, "Khasab");
}

TEST_F(OfflineReverseGeocoderTest, TakesCliffsAndPiersForLand) {
    EXPECT_EQ(at(71.1710, 25.7836).city, "Honningsvåg");
}

TEST_F(OfflineReverseGeocoderTest, NamesNoTownFarAcrossWater) {
    // A beach of Virgin Gorda, eighteen kilometres from the capital on Tortola.
    const Placemark beach = at(18.4290, -64.4440);
    EXPECT_NE(beach.city, "Road Town");
    EXPECT_EQ(beach.country, "British Virgin Islands");
}

TEST_F(OfflineReverseGeocoderTest, NamesVillagesThatOnlyThePostKnows) {
    EXPECT_EQ(at(43.8791, -103.4591).city, "Keystone");
    EXPECT_EQ(at(55.9150, -130.0250).city, "Hyder");
}

TEST_F(OfflineReverseGeocoderTest, LetsQuartersAndPostalCodesWidenTheirTown) {
    EXPECT_EQ(at(32.5520, -117.0430).city, "San Diego");
    EXPECT_EQ(at(40.4984, -3.7314).city, "Madrid");
}

TEST_F(OfflineReverseGeocoderTest, TakesASectionOfNoTownForOne) {
    EXPECT_EQ(at(54.9090, 8.2970).city, "Westerland");
}

TEST_F(OfflineReverseGeocoderTest, NamesNoMetropolisOfAnotherState) {
    EXPECT_EQ(at(40.7370, -74.0310).city, "Hoboken");
}

TEST_F(OfflineReverseGeocoderTest, LeavesTheKindOutOfAnAreasName) {
    EXPECT_EQ(at(64.0480, -16.1800).city, "Hornafjörður");
    EXPECT_EQ(at(17.2220, -89.6237).city, "San José");
}

TEST_F(OfflineReverseGeocoderTest, FindsNothingInMidOcean) {
    for (const auto& [latitude, longitude] : std::vector<std::pair<double, double>>{
             {30, -40}, {0, 0}, {-35, -15}, {25, 180}, {25, -180}, {45.5, -6}, {38.3, -18}, {88, -150}})
        EXPECT_EQ(at(latitude, longitude), Placemark{}) << latitude << " " << longitude;
}

TEST_F(OfflineReverseGeocoderTest, NamesTheCountryWithinSightOfItsCoast) {
    EXPECT_EQ(at(36.15, -6.35).country, "Spain");
    EXPECT_EQ(at(54.35, 10.3).country, "Germany");
}

TEST_F(OfflineReverseGeocoderTest, NamesAntarcticaAsACountryAndTheNorthPoleNotAtAll) {
    EXPECT_EQ(at(-90, 0), (Placemark{std::nullopt, "Antarctica"}));
    EXPECT_EQ(at(-90, 180), (Placemark{std::nullopt, "Antarctica"}));
    EXPECT_EQ(at(-89.99, 139.27), (Placemark{std::nullopt, "Antarctica"}));
    // Shelf ice is no sea; the Weddell Sea is.
    EXPECT_EQ(at(-82, -175), (Placemark{std::nullopt, "Antarctica"}));
    EXPECT_EQ(at(-66, -20), Placemark{});
    EXPECT_EQ(at(90, 0), Placemark{});
    EXPECT_EQ(at(90, -180), Placemark{});
}

TEST_F(OfflineReverseGeocoderTest, IsTheSameOnBothSidesOfTheDateLine) {
    EXPECT_EQ(at(-16.8, 180).country, "Fiji");
    EXPECT_EQ(at(-16.8, -180).country, "Fiji");
    EXPECT_EQ(at(66.5, 180).country, "Russia");
    EXPECT_EQ(at(66.5, -180).country, "Russia");
    EXPECT_EQ(at(66.5, -179.99).country, "Russia");
}

TEST_F(OfflineReverseGeocoderTest, FindsNothingForWhatIsNotOnEarth) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const auto& [latitude, longitude] : std::vector<std::pair<double, double>>{
             {nan, 0}, {0, nan}, {infinity, 0}, {0, -infinity}, {90.1, 0}, {0, 181}})
        EXPECT_EQ(at(latitude, longitude), Placemark{}) << latitude << " " << longitude;
}

TEST_F(OfflineReverseGeocoderTest, AnswersAnywhereOnEarth) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> latitude(-90, 90);
    std::uniform_real_distribution<double> longitude(-180, 180);
    for (int i = 0; i < 5000; ++i) {
        const Placemark found = at(latitude(random), longitude(random));
        EXPECT_TRUE(found.country || !found.city);
        EXPECT_NE(found.city, "");
        EXPECT_NE(found.country, "");
    }
}

TEST_F(OfflineReverseGeocoderTest, AgreesWithTheLabelsOfRealPhotos) {
    const char* folder = std::getenv("ROAMLY_TEST_PHOTOS");
    if (!folder)
        GTEST_SKIP() << "ROAMLY_TEST_PHOTOS names no folder of photos";
    std::ifstream stream(std::filesystem::path(folder) / "manifest.json");
    const auto manifest = nlohmann::json::parse(stream);
    int compared = 0;
    for (const auto& item : manifest.at("items")) {
        if (!item.contains("labels") || !item["labels"].contains("place") || !item.contains("lat"))
            continue;
        const std::string label = item["labels"]["place"];
        const Placemark found = at(item["lat"], item["lon"]);
        ++compared;
        // Labels are of the kind "Berkeley, California, US": the town or area first.
        const std::string first = label.substr(0, label.find_first_of(",/"));
        if (found.city.value_or("").find(first) == std::string::npos)
            std::printf("%s: %s, %s\n", label.c_str(), found.city.value_or("-").c_str(),
                        found.country.value_or("-").c_str());
        EXPECT_TRUE(found.city) << label;
        EXPECT_TRUE(found.country) << label;
    }
    EXPECT_GT(compared, 0);
}

} // namespace
} // namespace Analysis
