#include "FakeClock.h"
#include "LoopbackServer.h"
#include "TemporaryFolder.h"

#include <Analysis/LocationResolver.h>
#include <Analysis/NominatimReverseGeocoder.h>
#include <Foundation/Instant.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace Analysis {
namespace {

using testing::HasSubstr;

std::string answer(const std::string& status, const std::string& body, const std::string& headers = {}) {
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n" + headers + "\r\n" + body;
}

std::string address(const std::string& members) {
    return answer("200 OK", R"({"place_id":1,"address":{)" + members + "}}");
}

/// What one answer of the server comes to.
Placemark placemarkOf(const std::string& response) {
    LoopbackServer server([&](const std::string&) { return response; });
    return NominatimReverseGeocoder(server.url(), "Roamly/1").placemark({48.8584, 2.2945}, {});
}

std::optional<double> resetOf(const std::string& response) {
    try {
        (void)placemarkOf(response);
    } catch (const GeocodingRateLimited& refusal) {
        return LocationResolver::throttleResetSeconds(refusal);
    } catch (const GeocodingError&) {
        return std::nullopt;
    }
    ADD_FAILURE() << "no refusal";
    return std::nullopt;
}

TEST(NominatimReverseGeocoderTest, AsksForTheCoordinateInEnglishAndSaysWhoItIs) {
    LoopbackServer server([](const std::string&) { return address(R"("city":"Paris","country":"France")"); });
    NominatimReverseGeocoder geocoder(server.url() + "/nominatim/", "Roamly/0.1 (app.roamly.Roamly)");
    EXPECT_EQ(geocoder.placemark({48.8584, -0.00001}, {}), (Placemark{"Paris", "France"}));
    ASSERT_EQ(server.requests().size(), 1U);
    const std::string request = server.requests().front();
    EXPECT_THAT(request, testing::StartsWith("GET /nominatim/reverse?format=jsonv2&addressdetails=1&zoom=14&"
                                             "lat=48.8584000&lon=-0.0000100 HTTP/1.1\r\n"));
    EXPECT_THAT(request, HasSubstr("\r\nUser-Agent: Roamly/0.1 (app.roamly.Roamly)\r\n"));
    EXPECT_THAT(request, HasSubstr("\r\nAccept-Language: en\r\n"));
}

TEST(NominatimReverseGeocoderTest, TakesTheTownThenTheCountyThenTheState) {
    EXPECT_EQ(placemarkOf(address(R"("village":"Giverny","county":"Eure","country":"France")")).city,
              "Giverny");
    EXPECT_EQ(
        placemarkOf(address(R"("county":"Inyo County","state":"California","country":"United States")")).city,
        "Inyo County");
    EXPECT_EQ(placemarkOf(address(R"("state":"Magallanes","country":"Chile")")).city, "Magallanes");
}

TEST(NominatimReverseGeocoderTest, YieldsACountryWithoutACity) {
    EXPECT_EQ(placemarkOf(address(R"("country":"Antarctica")")), (Placemark{std::nullopt, "Antarctica"}));
}

TEST(NominatimReverseGeocoderTest, YieldsNothingWhereTheServerKnowsNothing) {
    EXPECT_EQ(placemarkOf(answer("200 OK", R"({"error":"Unable to geocode"})")), Placemark{});
}

TEST(NominatimReverseGeocoderTest, MapsARefusalToItsResetTime) {
    EXPECT_EQ(resetOf(answer("429 Too Many Requests", "", "Retry-After: 12\r\n")), 12.0);
    EXPECT_EQ(resetOf(answer("503 Service Unavailable", "", "retry-after: 7\r\n")), 7.0);
    EXPECT_EQ(resetOf(answer("429 Too Many Requests", "slow down")), 0.0);
    EXPECT_EQ(resetOf(answer("429 Too Many Requests", "", "Retry-After: soon\r\n")), 0.0);
    EXPECT_EQ(resetOf(answer("503 Service Unavailable", "")), std::nullopt);
}

TEST(NominatimReverseGeocoderTest, ReadsDatesAndSecondsOfRetryAfter) {
    const auto now = *Foundation::makeInstant(2026, 11, 20, 12, 0, 0);
    EXPECT_EQ(NominatimReverseGeocoder::retryAfterSeconds("120", now), 120.0);
    EXPECT_EQ(NominatimReverseGeocoder::retryAfterSeconds("Fri, 20 Nov 2026 12:01:30 GMT", now), 90.0);
    EXPECT_EQ(NominatimReverseGeocoder::retryAfterSeconds("Fri, 20 Nov 2026 11:00:00 GMT", now), 0.0);
    for (const char* nonsense :
         {"", "-5", "1.5", "12 seconds", "Fri, 20 Nov 2026 12:01:30 CET", "Fri, 20 Nuv 2026 12:01:30 GMT",
          "Fri, 32 Nov 2026 12:01:30 GMT", "99999999999999999999999"})
        EXPECT_EQ(NominatimReverseGeocoder::retryAfterSeconds(nonsense, now), std::nullopt) << nonsense;
}

TEST(NominatimReverseGeocoderTest, FailsOnAnswersThatMakeNoSense) {
    for (const std::string& response :
         {answer("500 Internal Server Error", "{}"), answer("404 Not Found", ""), answer("200 OK", "garbage"),
          answer("200 OK", "[]"), answer("200 OK", "{}"), answer("200 OK", R"({"address":[]})"),
          answer("200 OK", std::string(2 << 20, ' ')), std::string(), std::string("not HTTP at all\r\n\r\n"),
          std::string("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf")})
        EXPECT_THROW((void)placemarkOf(response), GeocodingError) << response.substr(0, 60);
}

TEST(NominatimReverseGeocoderTest, IgnoresMembersThatAreNoTexts) {
    EXPECT_EQ(placemarkOf(address(R"("city":3,"town":"","village":"Oia","country":["Greece"])")),
              (Placemark{"Oia", std::nullopt}));
}

TEST(NominatimReverseGeocoderTest, FailsWhenNobodyListensAndForOtherProtocols) {
    std::string url;
    {
        url = LoopbackServer([](const std::string&) { return std::string(); }).url();
    }
    EXPECT_THROW((void)NominatimReverseGeocoder(url, "Roamly/1").placemark({1, 1}, {}), GeocodingError);
    EXPECT_THROW((void)NominatimReverseGeocoder("file:///etc", "Roamly/1").placemark({1, 1}, {}),
                 GeocodingError);
    EXPECT_THROW((void)NominatimReverseGeocoder("", "Roamly/1").placemark({1, 1}, {}), GeocodingError);
}

TEST(NominatimReverseGeocoderTest, FollowsARedirect) {
    LoopbackServer target([](const std::string&) { return address(R"("city":"Rome","country":"Italy")"); });
    LoopbackServer server([&](const std::string&) {
        return answer("302 Found", "", "Retry-After: 99\r\nLocation: " + target.url() + "/elsewhere\r\n");
    });
    EXPECT_EQ(NominatimReverseGeocoder(server.url(), "Roamly/1").placemark({1, 1}, {}).city, "Rome");
}

TEST(NominatimReverseGeocoderTest, EndsARequestUnderWayAtOnce) {
    std::atomic<bool> done = false;
    LoopbackServer server([&](const std::string&) {
        while (!done)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        return std::string();
    });
    std::stop_source stop;
    std::jthread stopper([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        stop.request_stop();
    });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_THROW((void)NominatimReverseGeocoder(server.url(), "Roamly/1").placemark({1, 1}, stop.get_token()),
                 GeocodingError);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    done = true;
}

TEST(NominatimReverseGeocoderTest, LetsTheResolverRetryAfterTheTimeTheServerStates) {
    int requests = 0;
    LoopbackServer server([&](const std::string&) {
        return ++requests == 1 ? answer("429 Too Many Requests", "", "Retry-After: 30\r\n")
                               : address(R"("town":"Hallstatt","country":"Austria")");
    });
    const TemporaryFolder folder;
    GeocodeCache cache(folder / "geocode.json");
    NominatimReverseGeocoder geocoder(server.url(), "Roamly/1");
    FakeClock clock;
    LocationResolver resolver(cache, geocoder, 45, std::chrono::seconds(60), clock);
    EXPECT_EQ(resolver.resolve({47.5622, 13.6493}),
              (ProjectModel::ResolvedLocation{"Hallstatt", "Austria", ProjectModel::Provenance::geocoded}));
    EXPECT_EQ(clock.sleeps, std::vector{31.0});
    EXPECT_EQ(server.requests().size(), 2U);
}

} // namespace
} // namespace Analysis
