// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Suggestion.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace CommandLine {

namespace {

/// How many letters must be inserted, removed or replaced to make one word the other.
std::size_t editDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t above = row[j];
            const std::size_t replaced = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
            row[j] = std::min({above + 1, row[j - 1] + 1, replaced});
            diagonal = above;
        }
    }
    return row.back();
}

} // namespace

std::string suggestion(std::string_view typed, std::span<const std::string_view> candidates) {
    const std::string_view* closest = nullptr;
    // Words that share less than about two thirds of their letters are no misspellings of each other.
    std::size_t best = std::max<std::size_t>(1, typed.size() / 3) + 1;
    // A distance costs the product of the lengths; nobody misspells a name by writing a page.
    if (typed.size() > 100)
        return {};
    for (const std::string_view& candidate : candidates) {
        const bool isBeginning = typed.size() >= 3 && candidate.starts_with(typed);
        const std::size_t distance = isBeginning ? 1 : editDistance(typed, candidate);
        if (distance < best) {
            best = distance;
            closest = &candidate;
        }
    }
    return closest ? " Did you mean " + std::string{*closest} + "?" : std::string{};
}

} // namespace CommandLine
