// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SectionWriter.h"

#include <cstring>

namespace GazetteerBuilder {

using namespace Analysis::GazetteerFormat;

SectionWriter::SectionWriter(const FileKind& kind)
    : m_kind(kind)
    , m_sections(kind.sectionCount)
    , m_bytes(sizeof(Header) + kind.sectionCount * sizeof(Section), '\0') {}

void SectionWriter::set(std::size_t number, std::span<const std::byte> bytes) {
    m_bytes.resize((m_bytes.size() + 7) / 8 * 8, '\0');
    m_sections.at(number) = {m_bytes.size(), bytes.size(), checksum(bytes)};
    m_bytes.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

std::string SectionWriter::file() const {
    const auto table = std::as_bytes(std::span(m_sections));
    const Header header{m_kind.magic, m_kind.version, m_kind.sectionCount, m_bytes.size(), checksum(table)};
    std::string bytes = m_bytes;
    std::memcpy(bytes.data(), &header, sizeof(header));
    std::memcpy(bytes.data() + sizeof(header), table.data(), table.size());
    return bytes;
}

} // namespace GazetteerBuilder
