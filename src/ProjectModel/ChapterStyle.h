// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace ProjectModel {

/// How a new place is announced.
enum class ChapterStyle { card, overlay };

/// In the order of pickers.
inline constexpr std::array allChapterStyles{ChapterStyle::card, ChapterStyle::overlay};

[[nodiscard]] std::string_view rawValue(ChapterStyle style);
[[nodiscard]] std::optional<ChapterStyle> chapterStyleFromRawValue(std::string_view text);
[[nodiscard]] std::string_view displayName(ChapterStyle style);

} // namespace ProjectModel
