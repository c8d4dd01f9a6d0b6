// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Captioning::CaptionPrompt {

/// For models that take text only: the picture reaches them as its scene tags.
[[nodiscard]] std::string text(const std::vector<std::string>& tags,
                               const std::optional<std::string>& guidance);

/// For models that are sent the picture.
[[nodiscard]] std::string vision(const std::optional<std::string>& guidance);

} // namespace Captioning::CaptionPrompt
