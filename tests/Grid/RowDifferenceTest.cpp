// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/RowDifference.h>

#include <Grid/GridPhotos.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using Foundation::Uuid;
using Grid::RowDifference;
using Grid::rowDifference;

std::vector<Uuid> ids(const std::vector<std::uint32_t>& numbers) {
    std::vector<Uuid> result;
    for (const std::uint32_t number : numbers)
        result.push_back(GridPhotos::id(number));
    return result;
}

/// What a list view makes of it.
std::vector<Uuid> applied(const RowDifference& difference, std::vector<Uuid> rows,
                          const std::vector<Uuid>& after) {
    for (auto row = difference.removed.rbegin(); row != difference.removed.rend(); ++row)
        rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(*row));
    if (!difference.order.empty()) {
        std::vector<Uuid> ordered;
        for (const std::size_t row : difference.order)
            ordered.push_back(rows.at(row));
        rows = ordered;
    }
    for (const std::size_t row : difference.inserted)
        rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(row), after[row]);
    return rows;
}

TEST(RowDifference, EqualListsDoNotDiffer) {
    EXPECT_EQ(rowDifference(ids({1, 2, 3}), ids({1, 2, 3})), RowDifference{});
    EXPECT_EQ(rowDifference({}, {}), RowDifference{});
}

TEST(RowDifference, TellsWhatGoesMovesAndComes) {
    const RowDifference difference = rowDifference(ids({1, 2, 3, 4}), ids({4, 5, 1, 3}));
    EXPECT_EQ(difference.removed, std::vector<std::size_t>{1});
    EXPECT_EQ(difference.order, (std::vector<std::size_t>{2, 0, 1}));
    EXPECT_EQ(difference.inserted, std::vector<std::size_t>{1});
}

TEST(RowDifference, LeadsFromAnyListToAnyOtherAlsoWhereIdsAreDoubled) {
    std::mt19937 random{7};
    for (int round = 0; round < 500; ++round) {
        const auto list = [&] {
            std::vector<std::uint32_t> numbers(random() % 12);
            std::generate(numbers.begin(), numbers.end(), [&] { return random() % 9; });
            return ids(numbers);
        };
        const std::vector<Uuid> before = list();
        const std::vector<Uuid> after = list();
        ASSERT_EQ(applied(rowDifference(before, after), before, after), after);
    }
}

} // namespace
