// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/CaptionError.h>

#include <utility>

namespace Captioning {

CaptionError::CaptionError(Case which)
    : m_which(std::move(which)) {}

const char* CaptionError::what() const noexcept {
    switch (m_which.index()) {
    case 0:
        return "caption backend unavailable";
    case 1:
        return "caption server refused";
    case 2:
        return "caption request failed";
    default:
        return "caption response empty";
    }
}

} // namespace Captioning
