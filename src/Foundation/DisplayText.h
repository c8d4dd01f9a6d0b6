// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <string>

namespace Foundation {

/// A path or file name as text to show and to store: always valid UTF-8. Names of files are bytes; those that
/// are not UTF-8 come out as U+FFFD. Any thread.
[[nodiscard]] std::string displayText(const std::filesystem::path& path);

/// The same in quotation marks, for sentences.
[[nodiscard]] std::string quotedText(const std::filesystem::path& path);

} // namespace Foundation
