#include "KnownPlaces.h"

#include <Analysis/OfflineReverseGeocoder.h>

#include <gtest/gtest.h>

#include <cstdio>

namespace Analysis {
namespace {

class OfflineReverseGeocoderTest : public testing::Test {
protected:
    static OfflineReverseGeocoder& geocoder() {
        static OfflineReverseGeocoder shared(ROAMLY_GAZETTEER);
        return shared;
    }
    static Placemark at(double latitude, double longitude) {
        return geocoder().placemark({latitude, longitude});
    }
};

TEST_F(OfflineReverseGeocoderTest, AgreesWithPeopleOnWellKnownPlaces) {
    const auto places = readKnownPlaces(ROAMLY_TEST_DATA "/places.tsv");
    ASSERT_GE(places.size(), 300U);
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
    EXPECT_GE(static_cast<double>(cities), 0.95 * static_cast<double>(places.size()));
    EXPECT_GE(static_cast<double>(countries), 0.99 * static_cast<double>(places.size()));
}

} // namespace
} // namespace Analysis
