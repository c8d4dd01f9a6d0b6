// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace Shell {

/// The application with its windows, from start to end. Returns the process's exit status.
[[nodiscard]] int run(int& argumentCount, char* arguments[]);

} // namespace Shell
