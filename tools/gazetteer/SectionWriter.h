// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/GazetteerFormat.h>

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace GazetteerBuilder {

/// Puts a file of `GazetteerFormat` together, section by section.
class SectionWriter {
public:
    explicit SectionWriter(const Analysis::GazetteerFormat::FileKind& kind);

    /// `Kind` is the enumeration of the file's sections.
    template <typename Kind, typename Record>
    void set(Kind kind, const std::vector<Record>& records) {
        set(static_cast<std::size_t>(kind), std::as_bytes(std::span(records)));
    }
    template <typename Kind>
    void set(Kind kind, const std::string& text) {
        set(static_cast<std::size_t>(kind), std::as_bytes(std::span(text)));
    }

    /// The whole file. Sections that were not set are empty.
    [[nodiscard]] std::string file() const;

private:
    void set(std::size_t number, std::span<const std::byte> bytes);

    const Analysis::GazetteerFormat::FileKind& m_kind;
    std::vector<Analysis::GazetteerFormat::Section> m_sections;
    /// With room for the header and the sections' table in front.
    std::string m_bytes;
};

} // namespace GazetteerBuilder
