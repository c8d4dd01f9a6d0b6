// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

namespace PhotoSources {

/// A regular file held open for reading. Directories, pipes, sockets and devices are refused without being
/// opened: reading them could block for ever or have side effects.
class ImageFile {
public:
    [[nodiscard]] static std::optional<ImageFile> open(const std::filesystem::path& path);

    ImageFile(ImageFile&& other) noexcept;
    ImageFile& operator=(ImageFile&&) = delete;
    ~ImageFile();

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    [[nodiscard]] int descriptor() const { return m_descriptor; }
    /// In bytes, when the file was opened.
    [[nodiscard]] std::uint64_t size() const { return m_size; }

    /// Fills `target` from `offset` on; how many bytes there were. Leaves the descriptor's own position
    /// alone.
    [[nodiscard]] std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> target) const;
    /// The whole file; nothing when it cannot be read or is longer than `limit` bytes.
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> readAll(std::uint64_t limit) const;

private:
    ImageFile(std::filesystem::path path, int descriptor, std::uint64_t size);

    std::filesystem::path m_path;
    int m_descriptor;
    std::uint64_t m_size;
};

} // namespace PhotoSources
