// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace Platform {

/// "file:///home/me/My%20Trip.roamly" of an absolute path, whose bytes need be no text. What of a path may
/// not stand in a URI is escaped (RFC 3986, sections 2.1 and 3.3).
[[nodiscard]] std::string fileUri(const std::filesystem::path& path);

/// The inverse; nothing for any other text and for files of another machine.
[[nodiscard]] std::optional<std::filesystem::path> pathOfFileUri(std::string_view uri);

} // namespace Platform
