// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Text.h>

#include <array>

namespace Foundation {

namespace {

/// UTF-8 forms of the characters with the property White_Space.
constexpr std::array<std::string_view, 25> whiteSpace{
    "\t",           "\n",           "\v",           "\f",           "\r",           " ",
    "\xC2\x85",     "\xC2\xA0",     "\xE1\x9A\x80", "\xE2\x80\x80", "\xE2\x80\x81", "\xE2\x80\x82",
    "\xE2\x80\x83", "\xE2\x80\x84", "\xE2\x80\x85", "\xE2\x80\x86", "\xE2\x80\x87", "\xE2\x80\x88",
    "\xE2\x80\x89", "\xE2\x80\x8A", "\xE2\x80\xA8", "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F",
    "\xE3\x80\x80"};

} // namespace

std::string_view trimmed(std::string_view text) {
    bool changed = true;
    while (changed) {
        changed = false;
        for (const std::string_view space : whiteSpace) {
            if (text.starts_with(space)) {
                text.remove_prefix(space.size());
                changed = true;
            }
            if (text.ends_with(space)) {
                text.remove_suffix(space.size());
                changed = true;
            }
        }
    }
    return text;
}

} // namespace Foundation
