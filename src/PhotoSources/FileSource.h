// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/ByteSource.h>
#include <PhotoSources/ImageFile.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

namespace PhotoSources {

/// An open file as a source of bytes. Its first bytes are read at once, since most questions about a photo
/// are answered there. Any thread.
class FileSource final : public ByteSource {
public:
    /// Nothing where `ImageFile::open` gives nothing.
    [[nodiscard]] static std::optional<FileSource> open(const std::filesystem::path& path);

    explicit FileSource(ImageFile file);
    FileSource(FileSource&&) noexcept = default;

    [[nodiscard]] const std::filesystem::path& path() const { return m_file.path(); }
    [[nodiscard]] std::uint64_t size() const override { return m_file.size(); }
    [[nodiscard]] bool read(std::uint64_t offset, std::span<std::uint8_t> target) const override;
    /// Up to the first 4096 bytes.
    [[nodiscard]] std::span<const std::uint8_t> head() const { return {m_head.get(), m_headSize}; }

private:
    ImageFile m_file;
    std::unique_ptr<std::uint8_t[]> m_head;
    std::size_t m_headSize;
};

} // namespace PhotoSources
