// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Instant.h>

#include <array>
#include <cstdio>

namespace Foundation {

std::string iso8601(Instant instant) {
    const auto day = std::chrono::floor<std::chrono::days>(instant);
    const std::chrono::year_month_day date{day};
    const std::chrono::hh_mm_ss time{instant - day};
    std::array<char, 48> buffer{};
    const int length =
        std::snprintf(buffer.data(), buffer.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ",
                      static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                      static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                      static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
    return {buffer.data(), static_cast<std::size_t>(length)};
}

std::optional<Instant> parseIso8601(std::string_view text) {
    constexpr std::string_view form = "dddd-dd-ddTdd:dd:ddZ";
    if (text.size() != form.size())
        return std::nullopt;
    for (std::size_t i = 0; i < form.size(); ++i) {
        const bool matches = form[i] == 'd' ? text[i] >= '0' && text[i] <= '9' : text[i] == form[i];
        if (!matches)
            return std::nullopt;
    }
    const auto number = [&](std::size_t position, std::size_t length) {
        unsigned value = 0;
        for (const char c : text.substr(position, length))
            value = value * 10 + static_cast<unsigned>(c - '0');
        return value;
    };
    return makeInstant(static_cast<int>(number(0, 4)), number(5, 2), number(8, 2), number(11, 2),
                       number(14, 2), number(17, 2));
}

std::optional<Instant> makeInstant(int year, unsigned month, unsigned day, unsigned hour, unsigned minute,
                                   unsigned second) {
    // The calendar types below hold a byte each and would wrap around.
    if (year < 1 || year > 9999 || month > 12 || day > 31 || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{month},
                                           std::chrono::day{day}};
    if (!date.ok())
        return std::nullopt;
    return std::chrono::sys_days{date} + std::chrono::hours{hour} + std::chrono::minutes{minute} +
           std::chrono::seconds{second};
}

} // namespace Foundation
