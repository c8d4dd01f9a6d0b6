// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/PhotoItem.h>

#include <cstddef>
#include <set>
#include <vector>

namespace ProjectModel::ReviewOps {

/// Moves the photos at the given positions, as a block in their present order, to before the photo that now
/// stands at `destination` (0…size, where size means the end). Positions outside the list are a caller's
/// error.
void move(std::vector<PhotoItem>& photos, const std::set<std::size_t>& positions, std::size_t destination);

} // namespace ProjectModel::ReviewOps
