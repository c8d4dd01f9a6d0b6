// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "NameRules.h"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace GazetteerBuilder {

namespace {

/// Countries whose names reach the table through a romanisation, marks and all, or whose marks English drops.
bool isWrittenPlainly(std::string_view country) {
    static const std::set<std::string_view> codes{
        "AE", "AF", "AM", "AZ", "BD", "BG", "BH", "BT", "BY", "CN", "CY", "EG", "ER", "ET",
        "GE", "GR", "HK", "IL", "IN", "IQ", "IR", "JO", "JP", "KG", "KH", "KP", "KR", "KW",
        "KZ", "LA", "LB", "LK", "LY", "MK", "MM", "MN", "MO", "MV", "NP", "OM", "PK", "PS",
        "QA", "RU", "SA", "SD", "SY", "TH", "TJ", "TM", "TW", "UA", "UZ", "VN", "YE"};
    return codes.contains(country);
}

std::string plainName(const Place& place) {
    if (place.asciiName.empty())
        return place.name;
    std::string name = place.asciiName;
    // In Chinese names an apostrophe parts syllables and stays; elsewhere it stands for a soft sign or a
    // glottal stop, which English readers leave out.
    if (place.country != "CN" && place.country != "TW" && place.country != "BD")
        std::erase_if(name, [](char c) { return c == '\'' || c == '`'; });
    // The Icelandic letter that looks like the Vietnamese one was spelled out.
    for (std::size_t at = 0; place.country == "VN" && (at = name.find("GJ")) != std::string::npos;)
        name.replace(at, 2, "D");
    return name;
}

/// "Zacualpan (San Mateo)" and "Uster / Nieder-Uster" say more than people do. In German names, additions
/// tell towns apart.
std::string withoutAdditions(const std::string& name, std::string_view country) {
    if (country == "DE" || country == "AT")
        return name;
    std::size_t end = name.size();
    for (const std::string_view addition : {" (", " [", ", "})
        end = std::min(end, name.find(addition));
    if (country == "CH")
        end = std::min(end, name.find(" / "));
    return name.substr(0, end);
}

/// A Japanese town's or area's name without the word for its kind: "Nara-shi" is Nara.
std::string withoutJapaneseKind(std::string name) {
    for (const std::string_view kind : {"-shi", "-Shi", " Shi", "-gun", "-Gun", " Gun"}) {
        if (name.ends_with(kind))
            name.resize(name.size() - kind.size());
    }
    return name;
}

/// Saints as the country's people write them: St Andrews, St. Augustine.
std::string withShortSaint(const std::string& name, std::string_view country) {
    constexpr std::string_view saint = "Saint ";
    if (!name.starts_with(saint) || (country != "GB" && country != "US"))
        return name;
    std::string shortened = country == "GB" ? "St " : "St. ";
    return shortened.append(name, saint.size());
}

std::pair<std::string, std::string> aroundStar(const std::string& pattern) {
    const std::size_t star = pattern.find('*');
    if (star == std::string::npos)
        throw std::runtime_error("no * in " + pattern);
    return {pattern.substr(0, star), pattern.substr(star + 1)};
}

} // namespace

std::string englishName(const Place& place) {
    std::string name = isWrittenPlainly(place.country) ? plainName(place) : place.name;
    name = withShortSaint(withoutAdditions(name, place.country), place.country);
    return place.country == "JP" ? withoutJapaneseKind(name) : name;
}

void nameInEnglish(std::vector<Place>& places, const std::filesystem::path& table) {
    std::map<std::pair<std::string, std::string>, std::size_t> largest;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto [entry, isNew] = largest.try_emplace({places[i].country, places[i].name}, i);
        if (!isNew && places[i].population > places[entry->second].population)
            entry->second = i;
    }
    std::map<std::size_t, std::string> names;
    for (const auto& row : readTable(table, 3)) {
        const auto found = largest.find({row[0], row[1]});
        if (found == largest.end())
            throw std::runtime_error(table.string() + " names " + row[1] + " (" + row[0] +
                                     "), which is no town");
        names[found->second] = row[2];
    }
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto known = names.find(i);
        places[i].name = known == names.end() ? englishName(places[i]) : known->second;
    }
}

AreaKinds::AreaKinds(const std::filesystem::path& table) {
    for (const auto& row : readTable(table, 3))
        m_rules[row[0]].push_back({aroundStar(row[1]), aroundStar(row[2])});
}

std::string AreaKinds::englishName(const std::string& name, const std::string& country) const {
    if (country == "JP")
        return withoutJapaneseKind(name);
    const auto rules = m_rules.find(country);
    if (rules == m_rules.end())
        return name;
    for (const auto& [around, instead] : rules->second) {
        const std::size_t length = around.first.size() + around.second.size();
        if (name.size() > length && name.starts_with(around.first) && name.ends_with(around.second))
            return instead.first + name.substr(around.first.size(), name.size() - length) + instead.second;
    }
    return name;
}

} // namespace GazetteerBuilder
