// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "NameRules.h"
#include "Tables.h"
#include "TextPool.h"

#include <Analysis/GazetteerFormat.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// The numbers by which records of the gazetteer name countries and areas.
namespace GazetteerBuilder {

/// A code as the file has it: padded with zero bytes.
[[nodiscard]] Analysis::GazetteerFormat::CountryCode countryCode(std::string_view code);

/// Countries, numbered in the order of their codes.
class Countries {
public:
    Countries(const std::map<std::string, std::string>& names, TextPool& texts);

    /// Of an ISO 3166-1 alpha-2 code; `none` when it has no name.
    [[nodiscard]] std::uint16_t number(const std::string& code) const;
    [[nodiscard]] const std::vector<Analysis::GazetteerFormat::Country>& records() const { return m_records; }

private:
    std::map<std::string, std::uint16_t> m_numbers;
    std::vector<Analysis::GazetteerFormat::Country> m_records;
};

/// Administrative areas of one level, numbered as they are asked for: what no town lies in is left out.
class Areas {
public:
    /// Both have to outlive it.
    Areas(std::map<std::string, std::string> names, const AreaKinds& kinds, TextPool& texts);

    /// Of a code as `readAreaNames` has it; `none` when it has no name. Throws when there are too many.
    [[nodiscard]] std::uint16_t number(const std::string& code);
    /// The position of each area's English name.
    [[nodiscard]] const std::vector<std::uint32_t>& records() const { return m_records; }

private:
    std::map<std::string, std::string> m_names;
    const AreaKinds& m_kinds;
    TextPool& m_texts;
    std::map<std::string, std::uint16_t> m_numbers;
    std::vector<std::uint32_t> m_records;
};

} // namespace GazetteerBuilder
