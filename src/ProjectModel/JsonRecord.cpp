#include "JsonRecord.h"

#include <algorithm>

namespace ProjectModel {

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
        throw errorAt(place, ProjectFileError::Kind::dataCorrupted, " holds one member twice.");
}

const JsonValue* JsonRecord::find(std::string_view key) const {
    const auto found =
        std::lower_bound(m_members->begin(), m_members->end(), key,
                         [](const auto& member, std::string_view name) { return member.key < name; });
    return found != m_members->end() && found->key == key ? &found->value : nullptr;
}

} // namespace ProjectModel
