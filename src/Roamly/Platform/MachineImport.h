// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Jobs/ImportCoordinator.h>

namespace Platform {

/// Importing from this machine's disks.
[[nodiscard]] Jobs::ImportEnvironment machineImport();

} // namespace Platform
