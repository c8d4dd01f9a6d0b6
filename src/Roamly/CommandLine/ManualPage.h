#pragma once

#include <string>

namespace CommandLine {

/// The program's manual page in roff; what packages install.
[[nodiscard]] std::string manualPage();

} // namespace CommandLine
