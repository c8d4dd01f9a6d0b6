// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/GazetteerFormat.h>

#include <cstddef>
#include <filesystem>
#include <span>

namespace Analysis {

/// A file of `GazetteerFormat`, mapped into memory and checked as a whole when it is opened. Any thread.
class SectionFile {
public:
    /// Throws GazetteerError when it is missing, damaged, or of another kind or version.
    SectionFile(const std::filesystem::path& file, const GazetteerFormat::FileKind& kind);
    ~SectionFile();
    SectionFile(const SectionFile&) = delete;
    SectionFile& operator=(const SectionFile&) = delete;

    /// `Kind` is the enumeration of the file's sections. Valid as long as the file.
    template <typename Record, typename Kind>
    [[nodiscard]] std::span<const Record> section(Kind kind) const {
        const std::span<const std::byte> bytes = sectionBytes(static_cast<std::size_t>(kind));
        return {reinterpret_cast<const Record*>(bytes.data()), bytes.size() / sizeof(Record)};
    }

private:
    [[nodiscard]] std::span<const std::byte> sectionBytes(std::size_t number) const;

    std::span<const std::byte> m_bytes;
};

} // namespace Analysis
