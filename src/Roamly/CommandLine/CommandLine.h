// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// The program without a window: `roamly COMMAND …`.
namespace CommandLine {

/// Runs the command that the arguments name (the program's own name first) and returns the process's exit
/// status. Called once, from the main thread, before any other thread exists.
int run(int argumentCount, char* arguments[]);

} // namespace CommandLine
