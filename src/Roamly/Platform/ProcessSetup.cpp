// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ProcessSetup.h>
#include <PhotoSources/ProcessSetup.h>
#include <Roamly/Platform/ProcessSetup.h>

#include <iostream>
#include <mutex>

namespace Platform {

void prepareProcess() {
    // Nothing of ours is written there. Where a distribution's ONNX Runtime shares its operators with another
    // library, these end up registered twice, and it tells std::cerr of each, hundreds of lines with the
    // first network. What fails is thrown anyway.
    std::cerr.rdbuf(nullptr);
    PhotoSources::prepareMetadata();
    Export::prepareProcess();
}

void preparePictures() {
    static std::once_flag once;
    std::call_once(once, PhotoSources::prepareDecoding);
}

} // namespace Platform
