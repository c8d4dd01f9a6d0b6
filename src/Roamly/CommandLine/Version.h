#pragma once

#include <string>

namespace CommandLine {

/// What `roamly --version` prints.
[[nodiscard]] std::string versionText();

} // namespace CommandLine
