// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "KnownAnswers.h"

#include "Tables.h"

#include <Analysis/OfflineReverseGeocoder.h>

#include <stdexcept>
#include <string>

namespace GazetteerBuilder {

void checkAnswers(const std::filesystem::path& gazetteer, const std::filesystem::path& landBorders,
                  const std::filesystem::path& table) {
    Analysis::OfflineReverseGeocoder geocoder(gazetteer, landBorders);
    for (const auto& fields : readTable(table, 4)) {
        const auto found = geocoder.placemark({std::stod(fields[0]), std::stod(fields[1])});
        if (found.city.value_or("-") != fields[2] || found.country.value_or("-") != fields[3])
            throw std::runtime_error("the gazetteer calls " + fields[0] + ", " + fields[1] + " " +
                                     found.city.value_or("-") + ", " + found.country.value_or("-") +
                                     " where it is " + fields[2] + ", " + fields[3]);
    }
}

} // namespace GazetteerBuilder
