// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <stop_token>

namespace Export {

/// Looks whether an export could play the file, by decoding its first sound. Throws ExportError:
/// appendFailed, with the reason, when it could not; cancelled.
void checkMusic(const std::filesystem::path& file, const std::stop_token& stop = {});

/// How long one play of the file is, in seconds, found by decoding all of it: what files say of themselves is
/// often wrong. Throws ExportError as above.
[[nodiscard]] double musicSeconds(const std::filesystem::path& file, const std::stop_token& stop = {});

} // namespace Export
