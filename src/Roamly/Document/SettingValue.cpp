// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bytes.h>
#include <Http/Url.h>
#include <Roamly/Document/SettingValue.h>

#include <array>
#include <charconv>
#include <cmath>

namespace Document::SettingValue {

std::optional<bool> boolean(std::string_view text) {
    if (text == "true")
        return true;
    if (text == "false")
        return false;
    return std::nullopt;
}

std::optional<double> number(std::string_view text) {
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc{} || result.ptr != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<double> positiveNumber(std::string_view text) {
    const std::optional<double> value = number(text);
    return value && *value > 0 ? value : std::nullopt;
}

std::string text(double number) {
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    return {buffer.data(), result.ptr};
}

std::optional<std::string> plainText(std::string_view text) {
    if (!Foundation::isValidUtf8(text))
        return std::nullopt;
    return std::string{text};
}

std::optional<std::string> webAddress(std::string_view text) {
    if (!Http::isHttpUrl(std::string{text}))
        return std::nullopt;
    return std::string{text};
}

} // namespace Document::SettingValue
