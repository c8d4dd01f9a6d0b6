#pragma once

#include "Sources.h"

#include <string>

namespace GazetteerBuilder {

/// The gazetteer's file. Prints what came in.
[[nodiscard]] std::string gazetteerFile(const Sources& sources);

} // namespace GazetteerBuilder
