// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>

namespace Foundation {

/// The text without white space and line breaks at its ends, by Unicode's White_Space property. `text` is
/// UTF-8; the result points into it.
[[nodiscard]] std::string_view trimmed(std::string_view text);

} // namespace Foundation
