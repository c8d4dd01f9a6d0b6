// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/ExportPreset.h>
#include <Foundation/Uuid.h>

#include <cstddef>
#include <set>
#include <span>
#include <string>
#include <string_view>

/// Readers of single arguments. All throw UsageError with a sentence that shows what was typed.
namespace CommandLine::Values {

/// `what` names the argument in the sentence, as "TEXT" or "--city".
[[nodiscard]] std::string text(std::string_view typed, std::string_view what);

/// A finite decimal number.
[[nodiscard]] double number(std::string_view typed, std::string_view what);

/// A position in a list, from 0.
[[nodiscard]] std::size_t position(std::string_view typed, std::string_view what);

/// An identifier in either case.
[[nodiscard]] Foundation::Uuid uuid(std::string_view typed);
[[nodiscard]] std::set<Foundation::Uuid> uuids(std::span<const std::string> typed);

/// "1920x1080".
[[nodiscard]] Frames::FrameSize frameSize(std::string_view typed);

[[nodiscard]] Export::ExportResolution resolution(std::string_view typed);
[[nodiscard]] Export::ExportCodec codec(std::string_view typed);

} // namespace CommandLine::Values
