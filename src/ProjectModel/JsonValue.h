// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ProjectModel {

/// A parsed JSON value.
struct JsonValue {
    struct Member;
    using Array = std::vector<JsonValue>;
    /// Ordered by key. A key that the text holds twice is here twice.
    using Object = std::vector<Member>;

    /// Numbers written without fraction and exponent are integers as long as they fit one of the two types.
    /// Null unless something else is put in.
    std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string, Array, Object>
        content;
};

struct JsonValue::Member {
    std::string key;
    JsonValue value;
};

/// Parses one JSON text in UTF-8; a byte order mark before it is ignored. Throws ProjectFileError
/// (dataCorrupted) for anything else, for numbers beyond a double's range, and for nesting deeper than 512.
[[nodiscard]] JsonValue parseJson(std::string_view text);

/// What the value is, for a sentence: "a number", "a list".
[[nodiscard]] std::string_view typeName(const JsonValue& value);

} // namespace ProjectModel
