// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>

/// How the values of settings are read from text, and what to tell someone whose text is none.
namespace Document::SettingValue {

/// Exactly "true" or "false".
[[nodiscard]] std::optional<bool> boolean(std::string_view text);

/// A finite decimal number, the whole text, a point as decimal sign whatever the locale.
[[nodiscard]] std::optional<double> number(std::string_view text);

/// A `number` above zero.
[[nodiscard]] std::optional<double> positiveNumber(std::string_view text);

/// The shortest text that `number` reads back to the same value.
[[nodiscard]] std::string text(double number);

/// Any text at all, the empty one too; nothing when it is not valid UTF-8.
[[nodiscard]] std::optional<std::string> plainText(std::string_view text);

/// An address of a web server: http or https, with a host.
[[nodiscard]] std::optional<std::string> webAddress(std::string_view text);

} // namespace Document::SettingValue
