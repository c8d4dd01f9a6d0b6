#pragma once

#include <PhotoSources/ByteSource.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

namespace PhotoSources {

/// A regular file opened for reading. Its first bytes are read at once: most questions about a photo are
/// answered there. Reading from several threads is allowed.
class RegularFile final : public ByteSource {
public:
    /// Nothing for folders, pipes, devices and what may not be read. Never waits for another process.
    [[nodiscard]] static std::optional<RegularFile> open(const std::filesystem::path& path);

    RegularFile(RegularFile&& other) noexcept;
    RegularFile& operator=(RegularFile&&) = delete;
    ~RegularFile() override;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    [[nodiscard]] std::uint64_t size() const override { return m_size; }
    [[nodiscard]] bool read(std::uint64_t offset, std::span<std::uint8_t> target) const override;
    /// Up to the first 4096 bytes.
    [[nodiscard]] std::span<const std::uint8_t> head() const { return {m_head.get(), m_headSize}; }

private:
    RegularFile(std::filesystem::path path, int descriptor, std::uint64_t size);

    [[nodiscard]] std::size_t readSome(std::uint64_t offset, std::span<std::uint8_t> target) const;

    std::filesystem::path m_path;
    int m_descriptor;
    std::uint64_t m_size;
    std::unique_ptr<std::uint8_t[]> m_head;
    std::size_t m_headSize = 0;
};

} // namespace PhotoSources
