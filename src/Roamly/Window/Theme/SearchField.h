// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QLineEdit;

namespace Theme {

/// Gives the field a lens that leads into it and a button that empties it, with the names that Qt leaves out.
/// For a field that has no button yet. Owner's thread.
void makeSearchField(QLineEdit& field);

} // namespace Theme
