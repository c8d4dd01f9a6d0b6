// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace GazetteerBuilder {

/// Texts one after another, each once and ended by a zero byte.
class TextPool {
public:
    /// The position of the text's first byte.
    std::uint32_t add(const std::string& text) {
        const auto [entry, isNew] = m_positions.try_emplace(text, static_cast<std::uint32_t>(m_bytes.size()));
        if (isNew)
            m_bytes.append(text).push_back('\0');
        return entry->second;
    }
    [[nodiscard]] const std::string& bytes() const { return m_bytes; }

private:
    std::string m_bytes;
    std::unordered_map<std::string, std::uint32_t> m_positions;
};

} // namespace GazetteerBuilder
