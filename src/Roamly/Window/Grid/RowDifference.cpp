// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/RowDifference.h>

#include <algorithm>
#include <unordered_map>

namespace Grid {

using Foundation::Uuid;

RowDifference rowDifference(std::span<const Uuid> before, std::span<const Uuid> after) {
    RowDifference difference;
    const std::size_t common = static_cast<std::size_t>(
        std::mismatch(before.begin(), before.end(), after.begin(), after.end()).first - before.begin());
    if (common == before.size() && common == after.size())
        return difference;

    // Rows of one id form a chain, so that equal ids are paired in their order.
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::unordered_map<Uuid, std::size_t> firstOf;
    std::vector<std::size_t> nextOf(before.size(), none);
    firstOf.reserve(before.size() - common);
    for (std::size_t row = before.size(); row-- > common;) {
        const auto [entry, isNew] = firstOf.try_emplace(before[row], row);
        if (!isNew) {
            nextOf[row] = entry->second;
            entry->second = row;
        }
    }

    std::vector<bool> stays(before.size(), false);
    std::fill_n(stays.begin(), common, true);
    std::vector<std::size_t> origin;
    origin.reserve(after.size());
    for (std::size_t row = 0; row < common; ++row)
        origin.push_back(row);
    for (std::size_t row = common; row < after.size(); ++row) {
        const auto match = firstOf.find(after[row]);
        if (match == firstOf.end() || match->second == none) {
            difference.inserted.push_back(row);
            continue;
        }
        origin.push_back(match->second);
        stays[match->second] = true;
        match->second = nextOf[match->second];
    }

    std::vector<std::size_t> positionAmongStaying(before.size());
    std::size_t staying = 0;
    for (std::size_t row = 0; row < before.size(); ++row) {
        positionAmongStaying[row] = staying;
        if (stays[row])
            ++staying;
        else
            difference.removed.push_back(row);
    }
    if (!std::is_sorted(origin.begin(), origin.end())) {
        difference.order = std::move(origin);
        for (std::size_t& row : difference.order)
            row = positionAmongStaying[row];
    }
    return difference;
}

} // namespace Grid
