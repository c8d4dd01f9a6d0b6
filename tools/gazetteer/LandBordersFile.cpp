// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LandBordersFile.h"

#include "LayerBuilder.h"
#include "Numbering.h"
#include "SectionWriter.h"
#include "Tables.h"

#include <Analysis/GazetteerFormat.h>

#include <vector>

namespace GazetteerBuilder {

namespace {

using namespace Analysis::GazetteerFormat;

constexpr const char* package = "@geo-maps/countries-land-100m";

/// What the licence wants in the file itself.
std::string notice(const Sources& sources) {
    return "This database is made available under the Open Database License 1.0, "
           "https://opendatacommons.org/licenses/odbl/1-0/.\nIt is derived from this one: " +
           sources.attribution(package) + ".\n";
}

} // namespace

std::string landBordersFile(const Sources& sources) {
    const std::vector<CountryShape> shapes = readLandBorders(sources.package(package) / "map.geo.json");
    // The package of the other polygons knows the short code to each long one, and gives nothing else here.
    const auto shortCodes =
        readLongCodes(sources.package("@rapideditor/country-coder") / "src/data/borders.json");
    std::vector<CountryCode> countries;
    for (const CountryShape& shape : shapes)
        countries.push_back(countryCode(shortCodes.at(shape.country)));
    const Layer layer = whereShapesMeet(buildLayer(outlines(shapes)));

    SectionWriter file(landBordersKind);
    file.set(LandBorderSection::Notice, notice(sources));
    file.set(LandBorderSection::Countries, countries);
    file.set(LandBorderSection::Vertices, layer.vertices);
    file.set(LandBorderSection::CellStarts, layer.cellStarts);
    file.set(LandBorderSection::CellEntries, layer.cellEntries);
    file.set(LandBorderSection::Edges, layer.edges);
    return file.file();
}

} // namespace GazetteerBuilder
