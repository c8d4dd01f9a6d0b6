// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <functional>
#include <vector>

class QMenu;
class QMenuBar;

namespace Shell {

class Actions;

/// Fills the bar with every action there is. `recent` fills the menu of recent projects each time it opens.
void fillMenuBar(QMenuBar& bar, const Actions& actions, const std::function<void(QMenu&)>& recent);

/// Adds the projects by their names; `open` is called with the one that is chosen.
void fillRecentMenu(QMenu& menu, const std::vector<std::filesystem::path>& projects,
                    const std::function<void(const std::filesystem::path&)>& open);

} // namespace Shell
