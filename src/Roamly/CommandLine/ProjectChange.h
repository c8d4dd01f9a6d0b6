// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/CommandLine/Command.h>
#include <Roamly/Document/ProjectDocument.h>

#include <functional>

namespace CommandLine {

/// What all commands do that change the project of their first argument by one quick step: open it, change
/// it, save it and say what became of it. Returns the exit status.
int changeProject(const Invocation& invocation,
                  const std::function<void(Document::ProjectDocument&)>& change);

} // namespace CommandLine
