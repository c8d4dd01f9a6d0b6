// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace CommandLine {

/// The program's manual page in roff; what packages install.
[[nodiscard]] std::string manualPage();

} // namespace CommandLine
