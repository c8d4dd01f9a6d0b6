// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Bytes.h>

#include <string>

namespace ProjectModel {

/// The project's background music.
struct MusicSelection {
    Foundation::Bytes bookmark;
    std::string displayName;

    friend bool operator==(const MusicSelection&, const MusicSelection&) = default;
};

} // namespace ProjectModel
