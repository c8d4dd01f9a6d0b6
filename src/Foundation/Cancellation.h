// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <exception>
#include <stop_token>

namespace Foundation {

/// Thrown where a long operation notices that its stop token was triggered. A category of its own: never
/// shown as an error text.
class Cancelled : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "cancelled"; }
};

inline void throwIfStopped(const std::stop_token& stop) {
    if (stop.stop_requested())
        throw Cancelled{};
}

} // namespace Foundation
