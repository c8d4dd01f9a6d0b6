#pragma once

#include <string>

namespace CommandLine {

/// A script that completes every command's words, options and files in bash; what packages install.
[[nodiscard]] std::string bashCompletion();

} // namespace CommandLine
