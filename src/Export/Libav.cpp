// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/Libav.h>

#include <new>

extern "C" {
#include <libavutil/error.h>
}

namespace Export::Libav {

Packet makePacket() {
    Packet packet(av_packet_alloc());
    if (!packet)
        throw std::bad_alloc();
    return packet;
}

Frame makeFrame() {
    Frame frame(av_frame_alloc());
    if (!frame)
        throw std::bad_alloc();
    return frame;
}

std::string errorText(int error) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(error, text, sizeof text);
    return text;
}

std::string fileUrl(const std::string& path) {
    return "file:" + path;
}

} // namespace Export::Libav
