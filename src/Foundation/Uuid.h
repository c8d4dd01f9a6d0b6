// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace Foundation {

/// A 128-bit identifier. Ordered by its bytes, which is also the order of its upper-case texts.
struct Uuid {
    /// In canonical order: bytes[0] is the one written first.
    std::array<std::uint8_t, 16> bytes{};

    /// A version 4 identifier from the operating system's random source. Any thread.
    [[nodiscard]] static Uuid random();

    /// Reads the canonical 36-character text in either case; nothing for any other text.
    [[nodiscard]] static std::optional<Uuid> parse(std::string_view text);

    /// The canonical 36-character text in upper case.
    [[nodiscard]] std::string text() const;

    // The check takes the zero that every comparison of orderings is made against for a null pointer.
    friend auto operator<=>(const Uuid&, const Uuid&) = default; // NOLINT(modernize-use-nullptr)
};

/// Where new identifiers come from; a parameter wherever a record is made, so that tests can choose them.
using UuidSource = std::function<Uuid()>;

} // namespace Foundation

template <>
struct std::hash<Foundation::Uuid> {
    std::size_t operator()(const Foundation::Uuid& id) const noexcept;
};
