// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "JsonPlace.h"
#include "JsonValue.h"

#include <ProjectModel/ProjectFile.h>

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace ProjectModel {

/// The text as JSON for a sentence, cut short: what stands in a damaged file can be anything.
[[nodiscard]] std::string excerpt(std::string_view text);

/// The sentence that begins with the place, as an error.
[[nodiscard]] ProjectFileError errorAt(const JsonPlace& place, ProjectFileError::Kind kind,
                                       const std::string& predicate);

/// "photos[3].id is a number, but must be a text."
[[nodiscard]] ProjectFileError mismatchAt(const JsonPlace& place, const JsonValue& found,
                                          std::string_view expected);

/// A JSON object whose members are read by name. A reader is a function of a value and its place that returns
/// the thing read or throws. Members that nobody asks for are ignored.
class JsonRecord {
public:
    /// Throws when the value is no object or holds a key twice: which of the two was meant cannot be known,
    /// and the other would be lost with the next save.
    JsonRecord(const JsonValue& value, const JsonPlace& place);

    template <typename Reader>
    [[nodiscard]] auto required(std::string_view key, Reader reader) const {
        const JsonValue* value = find(key);
        if (!value)
            throw errorAt({m_place, key}, ProjectFileError::Kind::keyNotFound, " is missing.");
        return reader(*value, JsonPlace{m_place, key});
    }

    /// Missing and null both mean no value.
    template <typename Reader>
    [[nodiscard]] auto optional(std::string_view key, Reader reader) const {
        using Result =
            std::optional<std::decay_t<std::invoke_result_t<Reader, const JsonValue&, const JsonPlace&>>>;
        const JsonValue* value = find(key);
        if (!value || std::holds_alternative<std::nullptr_t>(value->content))
            return Result{};
        return Result{reader(*value, JsonPlace{m_place, key})};
    }

    /// The value of the one member, where there is just one.
    [[nodiscard]] const JsonValue::Member* onlyMember() const {
        return m_members->size() == 1 ? &m_members->front() : nullptr;
    }

private:
    [[nodiscard]] const JsonValue* find(std::string_view key) const;

    const JsonValue::Object* m_members;
    const JsonPlace& m_place;
};

/// Makes a reader of lists out of a reader of their elements.
template <typename Reader>
[[nodiscard]] auto listOf(Reader reader) {
    return [reader](const JsonValue& value, const JsonPlace& place) {
        using Element = std::invoke_result_t<Reader, const JsonValue&, const JsonPlace&>;
        const auto* elements = std::get_if<JsonValue::Array>(&value.content);
        if (!elements)
            throw mismatchAt(place, value, "a list");
        std::vector<Element> result;
        result.reserve(elements->size());
        for (std::size_t i = 0; i < elements->size(); ++i)
            result.push_back(reader((*elements)[i], JsonPlace{place, i}));
        return result;
    };
}

} // namespace ProjectModel
