// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/GeocodeCache.h>
#include <Foundation/AtomicFile.h>
#include <Foundation/JsonWriter.h>

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <system_error>
#include <utility>

namespace Analysis {

namespace {

using Entries = std::map<std::string, ProjectModel::ResolvedLocation>;

std::int64_t hundredths(double degrees) {
    const double rounded = std::round(degrees * 100);
    // 2^63 is the first double that 64 bits do not hold; the comparison also fails for what is not a number.
    if (!(std::abs(rounded) < 9223372036854775808.0)) {
        std::fputs("GeocodeCache::gridKey: not a coordinate\n", stderr);
        std::abort();
    }
    return static_cast<std::int64_t>(rounded);
}

/// The text of a member that may be missing or null. Throws when it is something else.
std::optional<std::string> optionalText(const nlohmann::json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || found->is_null())
        return std::nullopt;
    return found->get<std::string>();
}

/// Throws when the text is no such object.
Entries decoded(const std::string& text) {
    // As type errors are exceptions of the same family, "is no object" may be one as well.
    const auto document = nlohmann::json::parse(text);
    Entries entries;
    for (const auto& [key, value] : document.get_ref<const nlohmann::json::object_t&>()) {
        ProjectModel::ResolvedLocation location;
        location.city = optionalText(value, "city");
        location.country = optionalText(value, "country");
        const auto provenance =
            ProjectModel::provenanceFromRawValue(value.at("provenance").get_ref<const std::string&>());
        if (!provenance)
            throw std::runtime_error("unknown provenance");
        location.provenance = *provenance;
        entries.emplace(key, std::move(location));
    }
    return entries;
}

} // namespace

bool isOnEarth(const ProjectModel::Coordinate& coordinate) {
    return std::abs(coordinate.latitude) <= 90 && std::abs(coordinate.longitude) <= 180;
}

GeocodeCache::GeocodeCache(std::filesystem::path file)
    : m_file(std::move(file)) {
    try {
        m_entries = decoded(Foundation::readFile(m_file));
    } catch (const std::exception&) {
        m_entries.clear();
    }
}

std::optional<ProjectModel::ResolvedLocation>
GeocodeCache::lookup(const ProjectModel::Coordinate& coordinate) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_entries.find(gridKey(coordinate));
    if (found == m_entries.end())
        return std::nullopt;
    return found->second;
}

void GeocodeCache::store(const ProjectModel::ResolvedLocation& location,
                         const ProjectModel::Coordinate& coordinate) {
    const std::lock_guard lock(m_mutex);
    m_entries.insert_or_assign(gridKey(coordinate), location);
}

void GeocodeCache::persist() const {
    const std::lock_guard lock(m_mutex);
    Foundation::JsonWriter json(Foundation::JsonWriter::Layout::Compact);
    try {
        json.beginObject();
        for (const auto& [key, location] : m_entries) {
            json.key(key).beginObject();
            if (location.city)
                json.key("city").value(*location.city);
            if (location.country)
                json.key("country").value(*location.country);
            json.key("provenance").value(rawValue(location.provenance)).endObject();
        }
        json.endObject();
        std::error_code ignored;
        std::filesystem::create_directories(m_file.parent_path(), ignored);
        Foundation::writeFileAtomically(m_file, json.text());
    } catch (const std::exception&) {
        // The answers can be had again.
    }
}

std::string GeocodeCache::gridKey(const ProjectModel::Coordinate& coordinate) {
    return std::to_string(hundredths(coordinate.latitude)) + "," +
           std::to_string(hundredths(coordinate.longitude));
}

} // namespace Analysis
