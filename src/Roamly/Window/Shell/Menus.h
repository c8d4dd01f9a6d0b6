// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

class QMenu;
class QMenuBar;

namespace Shell {

class Actions;

/// Fills the bar with every action there is. `recent` fills the menu of recent projects each time it opens.
void fillMenuBar(QMenuBar& bar, const Actions& actions, const std::function<void(QMenu&)>& recent);

} // namespace Shell
