// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>

#include <cstddef>
#include <span>
#include <vector>

namespace Grid {

/// How one list of ids becomes another, told as a list view follows it: first rows go, then those that stay
/// take their new order, then new ones come.
struct RowDifference {
    /// Positions before, ascending.
    std::vector<std::size_t> removed;
    /// Counting only rows that stay: the one that stood at order[i] stands at i. Empty when they keep their
    /// order.
    std::vector<std::size_t> order;
    /// Positions afterwards, ascending.
    std::vector<std::size_t> inserted;

    friend bool operator==(const RowDifference&, const RowDifference&) = default;
};

/// Of equal ids the first goes with the first, the second with the second. Takes time in proportion to the
/// rows.
[[nodiscard]] RowDifference rowDifference(std::span<const Foundation::Uuid> before,
                                          std::span<const Foundation::Uuid> after);

} // namespace Grid
