// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ProcessSetup.h>

#include <malloc.h>

extern "C" {
#include <libavutil/log.h>
}

namespace Export {

void prepareProcess() {
    av_log_set_level(AV_LOG_QUIET);
#ifdef __GLIBC__
    mallopt(M_MMAP_THRESHOLD, 4 << 20);
#endif
}

} // namespace Export
