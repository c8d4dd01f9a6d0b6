#pragma once

#include <Roamly/Jobs/ImportCoordinator.h>

namespace Platform {

/// Importing from this machine's disks.
[[nodiscard]] Jobs::ImportEnvironment machineImport();

} // namespace Platform
