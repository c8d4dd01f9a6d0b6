// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ProcessSetup.h>

#include <exiv2/exiv2.hpp>
#include <vips/vips.h>

#include <mutex>
#include <stdexcept>

namespace PhotoSources {

namespace {

void lockXmp(void* mutex, bool isLocking) {
    auto& xmpMutex = *static_cast<std::recursive_mutex*>(mutex);
    if (isLocking)
        xmpMutex.lock();
    else
        xmpMutex.unlock();
}

} // namespace

void prepareMetadata() {
    static std::recursive_mutex xmpMutex;
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    Exiv2::XmpParser::initialize(&lockXmp, &xmpMutex);
    // From 0.28 on it reads HEIC without being asked.
#if defined(EXV_ENABLE_BMFF) && !EXIV2_TEST_VERSION(0, 28, 0)
    Exiv2::enableBMFF(true);
#endif
}

void prepareDecoding() {
    // Broken photos are ordinary here; what libvips thinks of them must not reach the terminal.
    g_log_set_handler(
        "VIPS", static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK & ~G_LOG_LEVEL_ERROR),
        [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
    if (vips_init("roamly") != 0)
        throw std::runtime_error("The library that decodes pictures could not be started.");
    vips_cache_set_max(0);
    vips_concurrency_set(1);
}

} // namespace PhotoSources
