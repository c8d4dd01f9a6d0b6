// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QLineEdit;

namespace Theme {

/// Gives the field a button that empties it, with the name that Qt leaves out. Owner's thread.
void addClearButton(QLineEdit& field);

} // namespace Theme
