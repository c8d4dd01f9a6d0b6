// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace Platform {

/// Whatever is set for the process as a whole is set here: how libraries log, how memory is handed back, what
/// standard error carries. To be called once, before anything else. Takes no time worth telling. Owner's
/// thread.
void prepareProcess();

/// Starts what decodes pictures, which takes some 50 ms, so only what needs pictures calls it, before it
/// decodes or encodes any. The first call does it, the others wait for that. Throws std::runtime_error.
/// Thread-safe.
void preparePictures();

} // namespace Platform
