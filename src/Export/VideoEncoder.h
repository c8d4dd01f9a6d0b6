// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/ExportPreset.h>
#include <Export/Libav.h>
#include <Frames/YuvFrame.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace Export {

/// Compresses frames with libx264 or libx265 at the encoder's own default quality, on all cores.
class VideoEncoder {
public:
    /// Gets each compressed packet in decoding order, its times in frames. It may keep the contents by moving
    /// them out.
    using PacketSink = std::function<void(AVPacket&)>;

    /// Throws ExportError (writerSetupFailed).
    VideoEncoder(Frames::FrameSize size, ExportCodec codec, int fps, PacketSink sink);

    /// The next frame. Its memory is lent to the encoder, not copied. Throws ExportError
    /// (pixelBufferPoolUnavailable, appendFailed) and what the sink throws.
    void encode(std::shared_ptr<const Frames::YuvFrame> frame);

    /// After the last frame: hands the sink what the encoder still holds, a packet at a time. False when
    /// there is nothing left.
    [[nodiscard]] bool drain();

    [[nodiscard]] const AVCodecContext& context() const { return *m_context; }

private:
    /// False when the encoder has no packet at the moment.
    bool takePacket();

    PacketSink m_sink;
    Libav::CodecContext m_context;
    Libav::Frame m_frame;
    Libav::Packet m_packet;
    std::int64_t m_nextIndex = 0;
    bool m_isDraining = false;
};

} // namespace Export
