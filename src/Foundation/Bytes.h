// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Foundation {

/// A byte string: file contents, bookmarks, encoded images.
using Bytes = std::vector<std::uint8_t>;

/// Standard alphabet, with padding, no line breaks (RFC 4648, section 4).
[[nodiscard]] std::string base64Encoded(const Bytes& bytes);

/// The inverse; nothing when the text is not such an encoding: another alphabet, missing padding, white
/// space. Bits of the last character that stand for no byte are ignored.
[[nodiscard]] std::optional<Bytes> base64Decoded(std::string_view text);

/// True when the bytes are well-formed UTF-8 (no overlong forms, no surrogates, at most U+10FFFF).
[[nodiscard]] bool isValidUtf8(std::string_view text);

} // namespace Foundation
