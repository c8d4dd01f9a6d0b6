// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/ImageScaling.h>
#include <Analysis/VisionNetwork.h>

#include <cstddef>
#include <stdexcept>
#include <utility>

namespace Analysis {

namespace {

constexpr int side = 224;
constexpr std::size_t classCount = 1000;

} // namespace

VisionNetwork::VisionNetwork(const std::filesystem::path& file)
    : m_network(file, side, {{"embedding", 0}, {"prob", classCount}}) {}

VisionAnswer VisionNetwork::look(const Foundation::Image& image) const {
    if (image.isEmpty())
        throw std::runtime_error("There is nothing to see in an empty image");
    auto answers = m_network.run(scaled(image, side, side).values);
    return {std::move(answers[0]), std::move(answers[1])};
}

} // namespace Analysis
