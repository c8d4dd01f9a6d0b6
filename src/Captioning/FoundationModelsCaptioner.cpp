// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/CaptionError.h>
#include <Captioning/FoundationModelsCaptioner.h>
#include <ProjectModel/Words.h>

namespace Captioning {

std::string FoundationModelsCaptioner::caption(const Foundation::Image& /*image*/, const SceneTags& /*tags*/,
                                               const std::stop_token& /*stop*/) const {
    throw CaptionError{BackendUnavailable{std::string{ProjectModel::Words::builtInUnavailable}}};
}

} // namespace Captioning
