// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/AudioGain.h>

#include <algorithm>

namespace Export::AudioGain {

float gain(double time, double total, double fadeIn, double fadeOut) {
    if (time < 0 || time > total || total <= 0)
        return 0;
    double level = 1;
    if (fadeIn > 0 && time < fadeIn)
        level = time / fadeIn;
    if (fadeOut > 0 && time > total - fadeOut)
        level = std::min(level, (total - time) / fadeOut);
    return static_cast<float>(std::clamp(level, 0.0, 1.0));
}

} // namespace Export::AudioGain
