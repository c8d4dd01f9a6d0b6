#pragma once

#include <stop_token>
#include <string_view>

namespace CommandLine {

/// True when someone sits at a terminal who can be asked.
[[nodiscard]] bool canAsk();

/// Asks on the terminal; only an answer that begins with "y" is a yes. Throws Foundation::Cancelled.
[[nodiscard]] bool askYesNo(std::string_view question, const std::stop_token& stop);

} // namespace CommandLine
