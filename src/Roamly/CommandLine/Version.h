#pragma once

#include <string>

namespace CommandLine {

/// What `roamly --version` prints.
[[nodiscard]] std::string versionText();

/// What `roamly --version --licences` adds: what the program owes to others. Throws std::system_error when
/// the file that says so is missing.
[[nodiscard]] std::string licencesText();

} // namespace CommandLine
