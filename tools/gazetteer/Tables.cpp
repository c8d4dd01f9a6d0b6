// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Tables.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string_view>

namespace GazetteerBuilder {

namespace {

using nlohmann::json;

json readJson(const std::filesystem::path& file) {
    std::ifstream stream(file);
    if (!stream)
        throw std::runtime_error("cannot read " + file.string());
    return json::parse(stream);
}

std::vector<std::string> split(std::string_view line, char separator) {
    std::vector<std::string> fields;
    for (;;) {
        const std::size_t end = line.find(separator);
        fields.emplace_back(line.substr(0, end));
        if (end == std::string_view::npos)
            return fields;
        line.remove_prefix(end + 1);
    }
}

template <typename Number>
Number number(const std::string& text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size())
        throw std::runtime_error("not a number: " + text);
    return value;
}

std::string textOr(const json& object, const char* key, const std::string& fallback) {
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : fallback;
}

Analysis::GazetteerFormat::Vertex vertex(double longitude, double latitude) {
    constexpr double unitsPerDegree = 100'000;
    return {static_cast<std::int32_t>(std::lround(longitude * unitsPerDegree)),
            static_cast<std::int32_t>(std::lround(latitude * unitsPerDegree))};
}

void appendPolygon(const json& polygon, Shape& shape) {
    for (const json& ring : polygon) {
        auto& vertices = shape.rings.emplace_back();
        for (const json& position : ring) {
            if (const auto next = vertex(position.at(0), position.at(1));
                vertices.empty() || vertices.back() != next)
                vertices.push_back(next);
        }
        if (vertices.size() > 1 && vertices.front() != vertices.back())
            vertices.push_back(vertices.front());
    }
}

Shape shapeOf(const json& geometry) {
    Shape shape;
    if (geometry.at("type") == "Polygon") {
        appendPolygon(geometry.at("coordinates"), shape);
    } else {
        for (const json& polygon : geometry.at("coordinates"))
            appendPolygon(polygon, shape);
    }
    return shape;
}

/// The country that people would name for one of the shapes of the borders' file, whose properties go by
/// codes of its own, by exceptional reservations and by the parts of a country.
std::string countryOfShape(const json& properties) {
    static const std::map<std::string, std::string> byName{{"Northern Cyprus", "CY"},
                                                           {"Akrotiri", "CY"},
                                                           {"Dhekelia", "CY"},
                                                           {"Crimea", "UA"},
                                                           {"Bir Tawil", ""}};
    static const std::map<std::string, std::string> reserved{
        {"IC", "ES"}, {"CQ", "GG"}, {"AC", "SH"}, {"TA", "SH"}, {"CP", "FR"}, {"DG", "IO"}, {"FX", "FR"}};
    // Territories with a code of their own whose shapes are listed island by island.
    static const std::set<std::string> territories{"BQ", "SJ", "TF", "GG", "IO", "SH", "UM"};

    if (const auto named = byName.find(textOr(properties, "nameEn", "")); named != byName.end())
        return named->second;
    if (const std::string code = textOr(properties, "iso1A2", ""); !code.empty()) {
        const auto stands = reserved.find(code);
        return stands == reserved.end() ? code : stands->second;
    }
    if (const auto groups = properties.find("groups"); groups != properties.end()) {
        for (const json& group : *groups) {
            if (territories.contains(group.get<std::string>()))
                return group.get<std::string>();
        }
    }
    return textOr(properties, "country", "");
}

/// Takes the features of a collection as they come past. Whatever the depth of their arrays, two numbers are
/// a position and an array of positions is a ring.
class LandBorderReader final : public nlohmann::json_sax<json> {
public:
    std::vector<CountryShape> take() { return std::move(m_countries); }

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t value) override { return coordinate(static_cast<double>(value)); }
    bool number_unsigned(number_unsigned_t value) override { return coordinate(static_cast<double>(value)); }
    bool number_float(number_float_t value, const string_t&) override { return coordinate(value); }
    bool string(string_t& value) override {
        if (m_key == "A3")
            m_country.country = value;
        return true;
    }
    bool binary(binary_t&) override { return true; }
    bool start_object(std::size_t) override {
        ++m_depth;
        return true;
    }
    bool key(string_t& value) override {
        m_key = value;
        return true;
    }
    bool end_object() override {
        --m_depth;
        constexpr int depthOfFeatures = 1;
        if (m_depth == depthOfFeatures && !m_country.shape.rings.empty()) {
            m_countries.push_back(std::move(m_country));
            m_country = {};
        }
        return true;
    }
    bool start_array(std::size_t) override {
        m_position.clear();
        return true;
    }
    bool end_array() override {
        if (m_position.size() >= 2) {
            const auto next = vertex(m_position[0], m_position[1]);
            if (m_ring.empty() || m_ring.back() != next)
                m_ring.push_back(next);
        } else if (!m_ring.empty()) {
            m_country.shape.rings.push_back(std::move(m_ring));
            m_ring.clear();
        }
        m_position.clear();
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
        throw std::runtime_error(error.what());
    }

private:
    bool coordinate(double value) {
        m_position.push_back(value);
        return true;
    }

    int m_depth = 0;
    std::string m_key;
    std::vector<double> m_position;
    std::vector<Analysis::GazetteerFormat::Vertex> m_ring;
    CountryShape m_country;
    std::vector<CountryShape> m_countries;
};

} // namespace

std::vector<Place> readPlaces(const std::filesystem::path& file) {
    std::vector<Place> places;
    for (std::vector<std::string>& fields : readTable(file, 19)) {
        Place& place = places.emplace_back();
        place.name = std::move(fields[1]);
        place.asciiName = std::move(fields[2]);
        place.latitude = number<double>(fields[4]);
        place.longitude = number<double>(fields[5]);
        place.kind = std::move(fields[7]);
        place.country = std::move(fields[8]);
        place.areas = {std::move(fields[10]), std::move(fields[11]), std::move(fields[12]),
                       std::move(fields[13])};
        place.population = number<std::uint32_t>(fields[14]);
    }
    return places;
}

std::vector<Place> readPostalCodes(const std::filesystem::path& file) {
    std::vector<Place> places;
    for (const std::vector<std::string>& fields : readTable(file, 12)) {
        // Army post offices lie in no county.
        if (fields[6].empty() || fields[9].empty())
            continue;
        Place& place = places.emplace_back();
        place.name = place.asciiName = fields[2];
        place.kind = "PPL";
        place.country = fields[0];
        place.areas = {fields[4], fields[6], "", ""};
        place.latitude = number<double>(fields[9]);
        place.longitude = number<double>(fields[10]);
    }
    return places;
}

std::map<std::string, std::string> readAreaNames(const std::filesystem::path& file) {
    std::map<std::string, std::string> names;
    for (const json& area : readJson(file))
        names[area.at("code").get<std::string>()] = area.at("name").get<std::string>();
    return names;
}

std::map<std::string, std::string> readCountryNames(const std::filesystem::path& file) {
    std::map<std::string, std::string> names;
    const json document = readJson(file);
    for (const auto& [code, name] : document.at("countries").items())
        names[code] = (name.is_array() ? name.at(0) : name).get<std::string>();
    return names;
}

std::vector<CountryShape> readBorders(const std::filesystem::path& file) {
    std::vector<CountryShape> shapes;
    const json document = readJson(file);
    for (const json& feature : document.at("features")) {
        if (!feature.at("geometry").is_null())
            shapes.push_back({countryOfShape(feature.at("properties")), shapeOf(feature.at("geometry"))});
    }
    return shapes;
}

std::map<std::string, std::string> readLongCodes(const std::filesystem::path& borders) {
    std::map<std::string, std::string> codes;
    const json document = readJson(borders);
    for (const json& feature : document.at("features")) {
        const json& properties = feature.at("properties");
        if (const std::string code = textOr(properties, "iso1A3", ""); !code.empty())
            codes[code] = textOr(properties, "iso1A2", "");
    }
    return codes;
}

std::vector<CountryShape> readLandBorders(const std::filesystem::path& file) {
    std::ifstream stream(file);
    if (!stream)
        throw std::runtime_error("cannot read " + file.string());
    LandBorderReader reader;
    json::sax_parse(stream, &reader);
    return reader.take();
}

std::vector<RegionShape> readRegions(const std::filesystem::path& file) {
    std::vector<RegionShape> shapes;
    std::uint16_t area = 0;
    const json document = readJson(file);
    for (const json& feature : document.at("features")) {
        const json& properties = feature.at("properties");
        RegionShape piece{area++,
                          textOr(properties, "iso_a2", ""),
                          textOr(properties, "name_en", textOr(properties, "name", "")),
                          {}};
        const json& geometry = feature.at("geometry");
        const bool isSinglePiece = geometry.at("type") == "Polygon";
        for (const json& polygon :
             isSinglePiece ? json::array({geometry.at("coordinates")}) : geometry.at("coordinates")) {
            piece.shape = {};
            appendPolygon(polygon, piece.shape);
            shapes.push_back(piece);
        }
    }
    return shapes;
}

std::vector<std::vector<std::string>> readTable(const std::filesystem::path& file, std::size_t columns) {
    std::ifstream stream(file);
    if (!stream)
        throw std::runtime_error("cannot read " + file.string());
    std::vector<std::vector<std::string>> rows;
    for (std::string line; std::getline(stream, line);) {
        if (line.empty() || line.front() == '#')
            continue;
        rows.push_back(split(line, '\t'));
        if (rows.back().size() != columns)
            throw std::runtime_error(file.string() + " has a line of another length: " + line);
    }
    return rows;
}

} // namespace GazetteerBuilder
