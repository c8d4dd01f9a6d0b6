// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <Foundation/JsonWriter.h>
#include <Roamly/CommandLine/Command.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace CommandLine {

/// The photo as the analysis sees it; nothing when it cannot be decoded.
[[nodiscard]] std::optional<Foundation::Image> analysedPhoto(const std::filesystem::path& file);

/// Prints a line for each file of the call, in order: its name and what `writeMembers` adds for its picture.
/// One that cannot be decoded has its name alone and makes the exit status 1 at the end.
[[nodiscard]] int
inspectPhotos(const Invocation& invocation,
              const std::function<void(Foundation::JsonWriter&, const Foundation::Image&)>& writeMembers);

} // namespace CommandLine
