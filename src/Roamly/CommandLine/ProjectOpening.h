// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/CommandLine/Command.h>
#include <Roamly/Document/DocumentSession.h>

#include <filesystem>

namespace CommandLine {

/// How a command waits for a project that another program is reading or writing: it says so once, and ends
/// when it is interrupted.
[[nodiscard]] Document::LockWait waitFor(const Invocation& invocation);

/// Opens a project for work that is long, and only where its result could be saved. Others may change the
/// project meanwhile; `DocumentSession::saveMerged` brings both together. Throws ProjectStoreError,
/// Foundation::Cancelled.
[[nodiscard]] Document::DocumentSession openForLongWork(const std::filesystem::path& path,
                                                        const Invocation& invocation);

} // namespace CommandLine
