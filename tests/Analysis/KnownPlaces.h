// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Coordinate.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace Analysis {

/// One line of data/places.tsv.
struct KnownPlace {
    std::string name;
    ProjectModel::Coordinate coordinate;
    std::vector<std::string> cities;
    std::vector<std::string> countries;
};

[[nodiscard]] inline std::vector<KnownPlace> readKnownPlaces(const std::string& file) {
    const auto split = [](const std::string& text, char separator) {
        std::vector<std::string> parts;
        std::istringstream stream(text);
        for (std::string part; std::getline(stream, part, separator);)
            parts.push_back(part);
        return parts;
    };
    std::ifstream stream(file);
    std::vector<KnownPlace> places;
    for (std::string line; std::getline(stream, line);) {
        if (line.empty() || line.front() == '#')
            continue;
        const auto fields = split(line, '\t');
        if (fields.size() != 5)
            throw std::runtime_error("not a place: " + line);
        places.push_back({fields[0],
                          {std::stod(fields[1]), std::stod(fields[2])},
                          split(fields[3], '|'),
                          split(fields[4], '|')});
    }
    return places;
}

/// Whether an answer (empty when there is none) is among the accepted ones.
[[nodiscard]] inline bool isAccepted(const std::vector<std::string>& accepted, const std::string& answer) {
    return std::any_of(accepted.begin(), accepted.end(), [&](const std::string& one) {
        return one == "*" || (one == "-" ? answer.empty() : one == answer);
    });
}

} // namespace Analysis
