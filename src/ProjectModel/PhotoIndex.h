// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/PhotoItem.h>

#include <cstddef>
#include <optional>
#include <span>
#include <unordered_map>

namespace ProjectModel {

/// Where each photo of a list stands, for whoever looks up many: made once over the list, and worth nothing
/// any more when photos came, went or moved. The first of equal ids counts.
class PhotoIndex {
public:
    explicit PhotoIndex(std::span<const PhotoItem> photos);

    /// Nothing when no photo has the id.
    [[nodiscard]] std::optional<std::size_t> find(const Foundation::Uuid& id) const;

private:
    std::unordered_map<Foundation::Uuid, std::size_t> m_positions;
};

} // namespace ProjectModel
