#pragma once

#include <Roamly/Jobs/CaptionController.h>

#include <string>

namespace Platform {

/// The key in the Secret Service, empty when none is stored there. One that an older version left in the
/// settings is moved there first. May wait for the service.
[[nodiscard]] std::string storedOpenRouterKey();

/// The world as it is: the user's settings, the Secret Service, the photos on disk and the network.
[[nodiscard]] Jobs::CaptionEnvironment systemCaptionEnvironment();

} // namespace Platform
