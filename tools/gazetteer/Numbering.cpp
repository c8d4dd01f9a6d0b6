// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Numbering.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace GazetteerBuilder {

using namespace Analysis::GazetteerFormat;

CountryCode countryCode(std::string_view code) {
    CountryCode result{};
    std::copy_n(code.begin(), std::min(code.size(), result.size()), result.begin());
    return result;
}

Countries::Countries(const std::map<std::string, std::string>& names, TextPool& texts) {
    for (const auto& [code, name] : names) {
        m_numbers[code] = static_cast<std::uint16_t>(m_records.size());
        m_records.push_back({countryCode(code), texts.add(name)});
    }
}

std::uint16_t Countries::number(const std::string& code) const {
    const auto found = m_numbers.find(code);
    return found == m_numbers.end() ? none : found->second;
}

Areas::Areas(std::map<std::string, std::string> names, const AreaKinds& kinds, TextPool& texts)
    : m_names(std::move(names))
    , m_kinds(kinds)
    , m_texts(texts) {}

std::uint16_t Areas::number(const std::string& code) {
    const auto name = m_names.find(code);
    if (name == m_names.end())
        return none;
    const auto [entry, isNew] = m_numbers.try_emplace(code, static_cast<std::uint16_t>(m_records.size()));
    if (isNew) {
        if (m_records.size() == none)
            throw std::runtime_error("too many administrative areas");
        m_records.push_back(m_texts.add(m_kinds.englishName(name->second, code.substr(0, 2))));
    }
    return entry->second;
}

} // namespace GazetteerBuilder
