// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "FakeClock.h"

#include <Analysis/LocationResolver.h>
#include <Analysis/NominatimReverseGeocoder.h>
#include <Foundation/Cancellation.h>
#include <Foundation/Instant.h>
#include <Support/LoopbackServer.h>
#include <Support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <string>
#include <thread>

namespace Analysis {
namespace {

using Request = LoopbackServer::Request;
using Answer = LoopbackServer::Answer;

Answer address(const std::string& members) {
    return LoopbackServer::ok(R"({"place_id":1,"address":{)" + members + "}}");
}

/// What one answer of the server comes to.
Placemark placemarkOf(const Answer& response) {
    const LoopbackServer server([&](const Request&) { return response; });
    return NominatimReverseGeocoder(server.url(), "Roamly/1").placemark({48.8584, 2.2945}, {});
}

std::optional<double> resetOf(const Answer& response) {
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
    const LoopbackServer server(
        [](const Request&) { return address(R"("city":"Paris","country":"France")"); });
    NominatimReverseGeocoder geocoder(server.url() + "/nominatim/", "Roamly/0.1 (app.roamly.Roamly)");
    EXPECT_EQ(geocoder.placemark({48.8584, -0.00001}, {}), (Placemark{"Paris", "France"}));
    ASSERT_EQ(server.requests().size(), 1U);
    const Request request = server.requests().front();
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.path, "/nominatim/reverse?format=jsonv2&addressdetails=1&zoom=14&"
                            "lat=48.8584000&lon=-0.0000100");
    EXPECT_EQ(request.header("User-Agent"), "Roamly/0.1 (app.roamly.Roamly)");
    EXPECT_EQ(request.header("Accept-Language"), "en");
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
    EXPECT_EQ(placemarkOf(LoopbackServer::ok(R"({"error":"Unable to geocode"})")), Placemark{});
}

TEST(NominatimReverseGeocoderTest, MapsARefusalToItsResetTime) {
    EXPECT_EQ(resetOf(LoopbackServer::status(429, "Retry-After: 12\r\n")), 12.0);
    EXPECT_EQ(resetOf(LoopbackServer::status(503, "retry-after: 7\r\n")), 7.0);
    EXPECT_EQ(resetOf(LoopbackServer::status(429, "", "slow down")), 0.0);
    EXPECT_EQ(resetOf(LoopbackServer::status(429, "Retry-After: soon\r\n")), 0.0);
    EXPECT_EQ(resetOf(LoopbackServer::status(503)), std::nullopt);
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
    for (const Answer& response :
         {LoopbackServer::status(500, "", "{}"), LoopbackServer::status(404), LoopbackServer::ok("garbage"),
          LoopbackServer::ok("[]"), LoopbackServer::ok("{}"), LoopbackServer::ok(R"({"address":[]})"),
          LoopbackServer::ok(std::string(5 << 20, ' ')), Answer{}, Answer{"not HTTP at all\r\n\r\n"},
          Answer{"HTTP/1.1 200 OK\r\nX-Note: HALF\r\nContent-Length: 100\r\n\r\nhalf"}})
        EXPECT_THROW((void)placemarkOf(response), GeocodingError) << response.bytes.substr(0, 60);
}

TEST(NominatimReverseGeocoderTest, IgnoresMembersThatAreNoTexts) {
    EXPECT_EQ(placemarkOf(address(R"("city":3,"town":"","village":"Oia","country":["Greece"])")),
              (Placemark{"Oia", std::nullopt}));
}

TEST(NominatimReverseGeocoderTest, FailsWhenNobodyListensAndForOtherProtocols) {
    std::string url;
    {
        url = LoopbackServer([](const Request&) { return Answer{}; }).url();
    }
    EXPECT_THROW((void)NominatimReverseGeocoder(url, "Roamly/1").placemark({1, 1}, {}), GeocodingError);
    EXPECT_THROW((void)NominatimReverseGeocoder("file:///etc", "Roamly/1").placemark({1, 1}, {}),
                 GeocodingError);
    EXPECT_THROW((void)NominatimReverseGeocoder("", "Roamly/1").placemark({1, 1}, {}), GeocodingError);
}

TEST(NominatimReverseGeocoderTest, FollowsARedirectOfTheServerItself) {
    const LoopbackServer server([](const Request& request) {
        return request.path == "/elsewhere"
                   ? address(R"("city":"Rome","country":"Italy")")
                   : LoopbackServer::status(302, "Retry-After: 99\r\nLocation: /elsewhere\r\n");
    });
    EXPECT_EQ(NominatimReverseGeocoder(server.url(), "Roamly/1").placemark({1, 1}, {}).city, "Rome");
}

TEST(NominatimReverseGeocoderTest, SendsNoCoordinateToAnotherServer) {
    const LoopbackServer other([](const Request&) { return address(R"("city":"Rome","country":"Italy")"); });
    const LoopbackServer server([&](const Request&) {
        return LoopbackServer::status(302, "Location: " + other.url("localhost") + "/elsewhere\r\n");
    });
    EXPECT_THROW((void)NominatimReverseGeocoder(server.url(), "Roamly/1").placemark({1, 1}, {}),
                 GeocodingError);
    EXPECT_TRUE(other.requests().empty());
}

TEST(NominatimReverseGeocoderTest, EndsARequestUnderWayWhenStopped) {
    const LoopbackServer server([](const Request&) {
        Answer answer;
        answer.silent = true;
        return answer;
    });
    std::stop_source stop;
    const std::jthread stopper([&] {
        EXPECT_TRUE(server.waitForRequests(1));
        stop.request_stop();
    });
    // Without the cancellation the request would end as a failure.
    EXPECT_THROW((void)NominatimReverseGeocoder(server.url(), "Roamly/1").placemark({1, 1}, stop.get_token()),
                 Foundation::Cancelled);
}

TEST(NominatimReverseGeocoderTest, LetsTheResolverRetryAfterTheTimeTheServerStates) {
    std::atomic<int> requests = 0;
    const LoopbackServer server([&](const Request&) {
        return ++requests == 1 ? LoopbackServer::status(429, "Retry-After: 30\r\n")
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
