// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CommandLine::ExitStatus {

inline constexpr int done = 0;
/// The command could not do it; one sentence on standard error says why.
inline constexpr int failed = 1;
/// The command was called wrongly.
inline constexpr int misuse = 2;
inline constexpr int interrupted = 130;

} // namespace CommandLine::ExitStatus
