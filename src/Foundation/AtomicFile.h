// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Bytes.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace Foundation {

/// Replaces the file's contents so that after a crash at any instant it holds the old bytes or the new ones:
/// a temporary file beside it is written, synchronised, renamed over it, and the folder synchronised. An
/// existing file's permission bits are kept; a symbolic link is followed and stays a link. New files get the
/// process's default mode. Throws std::system_error (the path is in its text) and leaves the old file as it
/// was.
void writeFileAtomically(const std::filesystem::path& path, std::string_view contents);

/// As `writeFileAtomically`, for what can be made anew: nothing waits for the disk. Other readers meet the
/// old bytes or the new ones, but after a crash of the machine the file may be cut off or empty, which
/// whoever reads it must notice.
void writeCacheFile(const std::filesystem::path& path, std::string_view contents);

/// Whether `writeFileAtomically` would find a file that may be replaced in a folder that takes files, tried
/// out and undone. Throws std::system_error as that would; the file stays as it is.
void checkFileCanBeReplaced(const std::filesystem::path& path);

/// Far above any document, and below what would take a machine's memory away.
inline constexpr std::size_t largestReadableFile = std::size_t{1} << 30;

/// The whole file. Throws std::system_error; a folder or another non-regular file is an error, as is one
/// larger than `largestReadableFile`.
[[nodiscard]] std::string readFile(const std::filesystem::path& path);

} // namespace Foundation
