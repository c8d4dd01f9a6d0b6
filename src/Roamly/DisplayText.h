#pragma once

#include <filesystem>
#include <string>

namespace Roamly {

/// A path or file name as text to show and to store: bytes that are not UTF-8 become replacement characters.
[[nodiscard]] std::string displayText(const std::filesystem::path& path);

} // namespace Roamly
