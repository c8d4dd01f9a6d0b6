// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/GazetteerFormat.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

/// What the packages hold, read as it is.
namespace GazetteerBuilder {

struct Place {
    std::string name;
    /// The name in plain Latin letters.
    std::string asciiName;
    double latitude = 0;
    double longitude = 0;
    /// GeoNames' feature code: PPLC a capital, PPLX a section of a town, …
    std::string kind;
    /// ISO 3166-1 alpha-2, and XK.
    std::string country;
    /// Codes of the administrative areas, widest first; empty where there is none.
    std::vector<std::string> areas;
    std::uint32_t population = 0;
};

/// Rings of outlines and holes alike; each ends where it began.
struct Shape {
    std::vector<std::vector<Analysis::GazetteerFormat::Vertex>> rings;
};

struct CountryShape {
    /// Empty for land that belongs to no country.
    std::string country;
    Shape shape;
};

/// A piece of land of a first-level area, with its holes.
struct RegionShape {
    /// The same for all pieces of one area.
    std::uint16_t area = 0;
    std::string country;
    std::string englishName;
    Shape shape;
};

[[nodiscard]] std::vector<Place> readPlaces(const std::filesystem::path& file);
/// A place for each postal code: where it is, and the town or village that its letters are addressed to.
[[nodiscard]] std::vector<Place> readPostalCodes(const std::filesystem::path& file);
/// "US.CA" or "US.CA.037" → name
[[nodiscard]] std::map<std::string, std::string> readAreaNames(const std::filesystem::path& file);
/// ISO 3166-1 alpha-2 → name, in the file's language
[[nodiscard]] std::map<std::string, std::string> readCountryNames(const std::filesystem::path& file);
[[nodiscard]] std::vector<CountryShape> readBorders(const std::filesystem::path& file);
/// ISO 3166-1 alpha-3 → alpha-2, from the same file.
[[nodiscard]] std::map<std::string, std::string> readLongCodes(const std::filesystem::path& borders);
/// One shape for each country, by its alpha-3 code. The file is large and read as a stream.
[[nodiscard]] std::vector<CountryShape> readLandBorders(const std::filesystem::path& file);
[[nodiscard]] std::vector<RegionShape> readRegions(const std::filesystem::path& file);

/// The fields of each line of a table; lines that are empty or begin with # are left out. Throws
/// when a line has not exactly `columns` fields.
[[nodiscard]] std::vector<std::vector<std::string>> readTable(const std::filesystem::path& file,
                                                              std::size_t columns);

} // namespace GazetteerBuilder
