// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/DuplicateClusterer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>

namespace Analysis::DuplicateClusterer {

namespace {

constexpr double noMatch = std::numeric_limits<double>::max();

struct Cluster {
    std::vector<std::size_t> members;
};

/// Positions in `items`, undated first, then by date; ties keep their order.
std::vector<std::size_t> captureOrder(std::span<const ClusterItem> items) {
    std::vector<std::size_t> order(items.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        // An empty optional compares less than any value.
        return items[a].captureDate < items[b].captureDate;
    });
    return order;
}

double secondsBetween(Foundation::Instant earlier, Foundation::Instant later) {
    return static_cast<double>((later - earlier).count());
}

/// The distance, or `noMatch` as soon as it is certain to be no less than `limit`. Eight running sums keep
/// the additions independent of each other, in an order that is always the same.
double distanceBelow(std::span<const float> a, std::span<const float> b, double limit) {
    if (a.empty() || a.size() != b.size())
        return noMatch;
    constexpr std::size_t lanes = 8;
    constexpr std::size_t block = 128;
    // The margin covers the rounding of the sums: what is given up here is beyond the limit in any order of
    // addition.
    const double bound = limit * limit * (1 + 1e-9);
    std::array<double, lanes> sums{};
    std::size_t i = 0;
    const auto total = [&] {
        return ((sums[0] + sums[4]) + (sums[1] + sums[5])) + ((sums[2] + sums[6]) + (sums[3] + sums[7]));
    };
    while (a.size() - i >= lanes) {
        const std::size_t end = std::min(i + block, a.size() - a.size() % lanes);
        for (; i < end; i += lanes) {
            for (std::size_t lane = 0; lane < lanes; ++lane) {
                const double difference = a[i + lane] - b[i + lane];
                sums[lane] += difference * difference;
            }
        }
        if (total() > bound)
            return noMatch;
    }
    for (std::size_t lane = 0; i < a.size(); ++i, ++lane) {
        const double difference = a[i] - b[i];
        sums[lane] += difference * difference;
    }
    return std::sqrt(total());
}

} // namespace

double distance(std::span<const float> a, std::span<const float> b) {
    return distanceBelow(a, b, std::numeric_limits<double>::infinity());
}

std::unordered_map<Foundation::Uuid, Foundation::Uuid> cluster(std::span<const ClusterItem> items,
                                                               double threshold, double timeWindow,
                                                               const Foundation::UuidSource& newID) {
    std::vector<Cluster> clusters;
    // The clusters that an item to come might still join, oldest first. Items come in capture order, so a
    // cluster whose last member has fallen out of the window of one dated item is out of reach of all later
    // ones.
    std::vector<std::size_t> open;

    for (const std::size_t position : captureOrder(items)) {
        const ClusterItem& item = items[position];
        double bestDistance = threshold;
        std::optional<std::size_t> best;
        std::size_t stillOpen = 0;
        for (const std::size_t candidate : open) {
            const ClusterItem& last = items[clusters[candidate].members.back()];
            if (item.captureDate && last.captureDate &&
                secondsBetween(*last.captureDate, *item.captureDate) > timeWindow)
                continue;
            open[stillOpen++] = candidate;
            const double d = distanceBelow(item.features, last.features, bestDistance);
            if (d < bestDistance) {
                bestDistance = d;
                best = candidate;
            }
        }
        open.resize(stillOpen);

        if (best) {
            clusters[*best].members.push_back(position);
        } else {
            open.push_back(clusters.size());
            clusters.push_back({{position}});
        }
    }

    std::unordered_map<Foundation::Uuid, Foundation::Uuid> result;
    for (const Cluster& group : clusters) {
        if (group.members.size() < 2)
            continue;
        const Foundation::Uuid id = newID();
        for (const std::size_t member : group.members)
            result.insert_or_assign(items[member].id, id);
    }
    return result;
}

} // namespace Analysis::DuplicateClusterer
