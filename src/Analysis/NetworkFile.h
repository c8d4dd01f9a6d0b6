// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <vector>

namespace Analysis {

/// A file that the networks need is missing or damaged. The text is one sentence for the user; it names the
/// file and says how to get it back.
class NetworkFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    [[nodiscard]] static NetworkFileError missing(const std::filesystem::path& file);
    [[nodiscard]] static NetworkFileError damaged(const std::filesystem::path& file);
};

/// The bytes of a trained network, or of what belongs to one. Its file begins with a header of three 64-bit
/// little-endian numbers: a magic one, the number of bytes that follow, and their checksum. One flipped bit
/// in a weight would go unnoticed otherwise, as nonsense in every answer.
class NetworkFile {
public:
    /// Throws NetworkFileError.
    explicit NetworkFile(const std::filesystem::path& file);

    [[nodiscard]] std::span<const std::byte> bytes() const;

private:
    std::vector<std::byte> m_bytes;
};

} // namespace Analysis
