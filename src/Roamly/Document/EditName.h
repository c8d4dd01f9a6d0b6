// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <utility>

namespace Document {

/// What a step is called in the menus, "Remove 3 Photos", and which steps that follow each other count as
/// one: those of the same key, such as the letters of one caption. Without a key each stands alone.
struct EditName {
    // Most steps have a name only.
    // NOLINTNEXTLINE(google-explicit-constructor)
    EditName(std::string nameText, std::string key = {})
        : text(std::move(nameText))
        , mergeKey(std::move(key)) {}
    // NOLINTNEXTLINE(google-explicit-constructor)
    EditName(const char* nameText)
        : text(nameText) {}

    std::string text;
    std::string mergeKey;
};

} // namespace Document
