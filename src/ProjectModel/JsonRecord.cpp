// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "JsonRecord.h"

#include <Foundation/Bytes.h>
#include <Foundation/JsonWriter.h>

#include <algorithm>

namespace ProjectModel {

std::string excerpt(std::string_view text) {
    constexpr std::size_t longest = 40;
    std::string shown{text.substr(0, longest)};
    if (shown.size() < text.size()) {
        while (!Foundation::isValidUtf8(shown))
            shown.pop_back();
        shown += "…";
    }
    return Foundation::JsonWriter{Foundation::JsonWriter::Layout::Compact}.value(shown).text();
}

ProjectFileError errorAt(const JsonPlace& place, ProjectFileError::Kind kind, const std::string& predicate) {
    return {kind, place.text() + predicate};
}

ProjectFileError mismatchAt(const JsonPlace& place, const JsonValue& found, std::string_view expected) {
    return errorAt(place, ProjectFileError::Kind::typeMismatch,
                   " is " + std::string{typeName(found)} + ", but must be " + std::string{expected} + ".");
}

JsonRecord::JsonRecord(const JsonValue& value, const JsonPlace& place)
    : m_members(std::get_if<JsonValue::Object>(&value.content))
    , m_place(place) {
    if (!m_members)
        throw mismatchAt(place, value, "an object");
    const auto twin = std::adjacent_find(m_members->begin(), m_members->end(),
                                         [](const auto& a, const auto& b) { return a.key == b.key; });
    if (twin != m_members->end())
        throw errorAt(place, ProjectFileError::Kind::dataCorrupted,
                      " holds " + excerpt(twin->key) + " twice.");
}

const JsonValue* JsonRecord::find(std::string_view key) const {
    const auto found =
        std::lower_bound(m_members->begin(), m_members->end(), key,
                         [](const auto& member, std::string_view name) { return member.key < name; });
    return found != m_members->end() && found->key == key ? &found->value : nullptr;
}

} // namespace ProjectModel
