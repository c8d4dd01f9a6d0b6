// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>

namespace Document {

/// What becomes of a project of which two went on from one state, `base`: `mine`, which brings the result of
/// long work, and `theirs`, which was saved meanwhile. Pure.
///
/// What one side changed holds. Where both changed the same (a photo's location, its caption, its selection
/// with their provenances, its group and score, any other member; one setting; the music; a source), what a
/// user decided holds, and theirs where both or neither are a user's. Photos and sources that one side
/// removed are gone, and those that one side added are there: mine take their place in time, or stand at the
/// end under a manual order. An order made by one side holds, theirs where both made one and mine is not the
/// only one by hand. Photos and sources are told apart by their ids; of equal ids the first goes with the
/// first.
[[nodiscard]] ProjectModel::Project merged(const ProjectModel::Project& base,
                                           const ProjectModel::Project& mine,
                                           const ProjectModel::Project& theirs);

} // namespace Document
