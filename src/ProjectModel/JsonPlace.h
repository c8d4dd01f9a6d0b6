// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ProjectModel {

/// Where in a document something stands, as a chain up to the root that lives on the stack of the functions
/// that walk it. Costs nothing until an error needs its text.
class JsonPlace {
public:
    /// The document itself.
    JsonPlace() = default;
    /// The place must outlive this one, as must the key.
    JsonPlace(const JsonPlace& parent, std::string_view key)
        : m_parent(&parent)
        , m_key(key) {}
    JsonPlace(const JsonPlace& list, std::size_t index)
        : m_parent(&list)
        , m_index(index) {}

    /// "photos[3].captureDate"
    [[nodiscard]] std::string text() const {
        if (!m_parent)
            return "The document";
        const std::string parent = m_parent->m_parent ? m_parent->text() : std::string{};
        if (m_key.empty())
            return parent + "[" + std::to_string(m_index) + "]";
        return parent.empty() ? std::string{m_key} : parent + "." + std::string{m_key};
    }

private:
    const JsonPlace* m_parent = nullptr;
    std::string_view m_key;
    std::size_t m_index = 0;
};

} // namespace ProjectModel
