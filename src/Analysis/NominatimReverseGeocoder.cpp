// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/NominatimReverseGeocoder.h>
#include <Foundation/Instant.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <string_view>
#include <utility>

namespace Analysis {

namespace {

constexpr std::chrono::seconds timeout{20};

/// Fixed notation: servers do not read exponents.
std::string decimal(double degrees) {
    std::array<char, 64> buffer{};
    const int length = std::snprintf(buffer.data(), buffer.size(), "%.7f", degrees);
    std::string text(buffer.data(), static_cast<std::size_t>(length));
    // A locale may write another decimal point.
    std::replace(text.begin(), text.end(), ',', '.');
    return text;
}

/// The first of the keys whose value is a text that is not empty.
std::optional<std::string> firstOf(const nlohmann::json& address, std::initializer_list<const char*> keys) {
    for (const char* key : keys) {
        const auto found = address.find(key);
        if (found != address.end() && found->is_string() && !found->get_ref<const std::string&>().empty())
            return found->get<std::string>();
    }
    return std::nullopt;
}

Placemark decoded(const std::string& body) {
    const auto answer = nlohmann::json::parse(body, nullptr, false);
    if (!answer.is_object())
        throw GeocodingError("the geocoding server's answer makes no sense");
    // Servers say so when nothing is there, which is an answer.
    if (answer.contains("error"))
        return {};
    const auto address = answer.find("address");
    if (address == answer.end() || !address->is_object())
        throw GeocodingError("the geocoding server's answer makes no sense");
    return {firstOf(*address, {"city", "town", "village", "municipality", "hamlet", "isolated_dwelling",
                               "county", "state_district", "state", "region"}),
            firstOf(*address, {"country"})};
}

/// "Sun, 06 Nov 1994 08:49:37 GMT", the one form that servers are to send.
std::optional<std::chrono::sys_seconds> httpDate(std::string_view text) {
    static constexpr std::array<std::string_view, 12> months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    if (text.size() != 29 || text.substr(3, 2) != ", " || text.substr(25) != " GMT" || text[19] != ':' ||
        text[22] != ':')
        return std::nullopt;
    const auto number = [&](std::size_t first, std::size_t count) {
        int value = -1;
        std::from_chars(text.data() + first, text.data() + first + count, value);
        return value;
    };
    const auto month = std::find(months.begin(), months.end(), text.substr(8, 3));
    const std::array fields{number(5, 2), number(12, 4), number(17, 2), number(20, 2), number(23, 2)};
    if (month == months.end() || *std::min_element(fields.begin(), fields.end()) < 0)
        return std::nullopt;
    return Foundation::makeInstant(fields[1], static_cast<unsigned>(month - months.begin()) + 1,
                                   static_cast<unsigned>(fields[0]), static_cast<unsigned>(fields[2]),
                                   static_cast<unsigned>(fields[3]), static_cast<unsigned>(fields[4]));
}

Http::Response answered(const Http::Transport& transport, const Http::Request& request,
                        const std::stop_token& stop) {
    try {
        return transport.send(request, stop);
    } catch (const Http::TransportError& error) {
        throw GeocodingError(error.what());
    }
}

} // namespace

NominatimReverseGeocoder::NominatimReverseGeocoder(std::string baseUrl, std::string userAgent,
                                                   std::shared_ptr<const Http::Transport> transport,
                                                   WallClock now)
    : m_baseUrl(std::move(baseUrl))
    , m_userAgent(std::move(userAgent))
    , m_transport(std::move(transport))
    , m_now(std::move(now)) {
    while (m_baseUrl.ends_with('/'))
        m_baseUrl.pop_back();
}

Placemark NominatimReverseGeocoder::placemark(const ProjectModel::Coordinate& coordinate,
                                              const std::stop_token& stop) {
    Http::Request request;
    // Zoom 14 is the level of villages and quarters; the address above it comes along.
    request.url = m_baseUrl +
                  "/reverse?format=jsonv2&addressdetails=1&zoom=14&lat=" + decimal(coordinate.latitude) +
                  "&lon=" + decimal(coordinate.longitude);
    request.headers = {
        {"User-Agent", m_userAgent}, {"Accept-Language", "en"}, {"Accept", "application/json"}};
    request.timeout = timeout;
    const Http::Response response = answered(*m_transport, request, stop);
    if (response.status == 200)
        return decoded(response.body);
    const auto retryAfter = response.headers.find("retry-after");
    const bool statesWhen = retryAfter != response.headers.end();
    if (response.status == 429 || (response.status == 503 && statesWhen))
        throw GeocodingRateLimited(statesWhen ? retryAfterSeconds(retryAfter->second, m_now())
                                              : std::nullopt);
    throw GeocodingError("the geocoding server answered with status " +
                         std::to_string(response.status.value_or(0)));
}

std::optional<double> NominatimReverseGeocoder::retryAfterSeconds(const std::string& header,
                                                                  std::chrono::sys_seconds now) {
    unsigned long seconds = 0;
    const auto [end, error] = std::from_chars(header.data(), header.data() + header.size(), seconds);
    if (end == header.data() + header.size() && error == std::errc{})
        return static_cast<double>(seconds);
    if (const auto date = httpDate(header))
        return std::max(0.0, static_cast<double>((*date - now).count()));
    return std::nullopt;
}

std::chrono::sys_seconds NominatimReverseGeocoder::systemTime() {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

} // namespace Analysis
