// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Tables.h"

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What towns and administrative areas are called in English.
namespace GazetteerBuilder {

/// The place's own name, in plain letters where the country writes another script or letters that English
/// readers drop, without additions that tell it from others of its name.
[[nodiscard]] std::string englishName(const Place& place);

/// Gives every place its English name: from the table, else by the rules. Throws when a line of the table
/// fits no place.
void nameInEnglish(std::vector<Place>& places, const std::filesystem::path& table);

/// Leaves out, or says in English, the words of an area's name that tell its kind.
class AreaKinds {
public:
    explicit AreaKinds(const std::filesystem::path& table);

    [[nodiscard]] std::string englishName(const std::string& name, const std::string& country) const;

private:
    struct Rule {
        std::pair<std::string, std::string> around;
        std::pair<std::string, std::string> instead;
    };
    std::map<std::string, std::vector<Rule>> m_rules;
};

} // namespace GazetteerBuilder
