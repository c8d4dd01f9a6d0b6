// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Jobs/CaptionController.h>

namespace Platform {

/// The world as it is: the user's settings, the Secret Service, the photos on disk and the network.
[[nodiscard]] Jobs::CaptionEnvironment systemCaptionEnvironment();

} // namespace Platform
