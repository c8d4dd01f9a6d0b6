// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportError.h>
#include <Export/VideoEncoder.h>

#include <string>
#include <utility>

namespace Export {

namespace {

Libav::CodecContext openEncoder(Frames::FrameSize size, ExportCodec codec, int fps) {
    const char* name = codec == ExportCodec::h264 ? "libx264" : "libx265";
    const AVCodec* encoder = avcodec_find_encoder_by_name(name);
    if (!encoder)
        throw ExportError(ExportError::Kind::writerSetupFailed,
                          "FFmpeg was built without " + std::string(name));
    Libav::CodecContext context(avcodec_alloc_context3(encoder));
    if (!context)
        throw ExportError(ExportError::Kind::pixelBufferPoolUnavailable);

    context->width = size.width;
    context->height = size.height;
    context->sample_aspect_ratio = {1, 1};
    context->pix_fmt = AV_PIX_FMT_YUV420P;
    context->time_base = {1, fps};
    context->framerate = {fps, 1};
    context->color_primaries = AVCOL_PRI_BT709;
    context->color_trc = AVCOL_TRC_BT709;
    context->colorspace = AVCOL_SPC_BT709;
    context->color_range = AVCOL_RANGE_MPEG;
    context->chroma_sample_location = AVCHROMA_LOC_LEFT;
    context->thread_count = 0;
    // The parameter sets belong in the sample entry, where QuickTime looks for them.
    context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;

    Libav::Options options;
    if (codec == ExportCodec::hevc)
        options.set("x265-params", "log-level=none");
    const int opened = avcodec_open2(context.get(), encoder, options.get());
    if (opened < 0)
        throw ExportError(ExportError::Kind::writerSetupFailed,
                          std::string(name) + ": " + Libav::errorText(opened));
    return context;
}

/// A buffer that keeps the frame alive as long as the encoder needs its planes.
AVBufferRef* lend(std::shared_ptr<const Frames::YuvFrame> frame) {
    auto owner = std::make_unique<std::shared_ptr<const Frames::YuvFrame>>(std::move(frame));
    const Frames::YuvFrame& yuv = **owner;
    const auto release = [](void* opaque, std::uint8_t*) {
        delete static_cast<std::shared_ptr<const Frames::YuvFrame>*>(opaque);
    };
    // Marked read-only below, so nobody writes through the pointer.
    auto* memory = const_cast<std::uint8_t*>(yuv.plane(0));
    const auto bytes = static_cast<std::size_t>(yuv.stride(0)) * static_cast<std::size_t>(yuv.planeHeight(0));
    AVBufferRef* buffer = av_buffer_create(memory, bytes, release, owner.get(), AV_BUFFER_FLAG_READONLY);
    if (!buffer)
        throw ExportError(ExportError::Kind::pixelBufferPoolUnavailable);
    static_cast<void>(owner.release());
    return buffer;
}

} // namespace

VideoEncoder::VideoEncoder(Frames::FrameSize size, ExportCodec codec, int fps, PacketSink sink)
    : m_sink(std::move(sink))
    , m_context(openEncoder(size, codec, fps))
    , m_frame(Libav::makeFrame())
    , m_packet(Libav::makePacket()) {}

void VideoEncoder::encode(std::shared_ptr<const Frames::YuvFrame> frame) {
    if (frame->size() != Frames::FrameSize{m_context->width, m_context->height})
        throw ExportError(ExportError::Kind::appendFailed, "a frame has the wrong size");

    AVFrame& lent = *m_frame;
    lent.format = m_context->pix_fmt;
    lent.width = m_context->width;
    lent.height = m_context->height;
    lent.sample_aspect_ratio = m_context->sample_aspect_ratio;
    lent.color_primaries = m_context->color_primaries;
    lent.color_trc = m_context->color_trc;
    lent.colorspace = m_context->colorspace;
    lent.color_range = m_context->color_range;
    lent.chroma_location = m_context->chroma_sample_location;
    for (int plane = 0; plane < 3; ++plane) {
        lent.data[plane] = const_cast<std::uint8_t*>(frame->plane(plane));
        lent.linesize[plane] = static_cast<int>(frame->stride(plane));
    }
    lent.buf[0] = lend(std::move(frame));
    lent.pts = m_nextIndex++;

    const int sent = avcodec_send_frame(m_context.get(), &lent);
    av_frame_unref(&lent);
    if (sent < 0)
        throw ExportError(ExportError::Kind::appendFailed, "video encoder: " + Libav::errorText(sent));
    while (takePacket()) {
    }
}

bool VideoEncoder::drain() {
    if (!m_isDraining) {
        m_isDraining = true;
        avcodec_send_frame(m_context.get(), nullptr);
    }
    return takePacket();
}

bool VideoEncoder::takePacket() {
    const int received = avcodec_receive_packet(m_context.get(), m_packet.get());
    if (received == AVERROR(EAGAIN) || received == AVERROR_EOF)
        return false;
    if (received < 0)
        throw ExportError(ExportError::Kind::appendFailed, "video encoder: " + Libav::errorText(received));
    // Every frame lasts one tick; encoders leave this out.
    m_packet->duration = 1;
    m_sink(*m_packet);
    av_packet_unref(m_packet.get());
    return true;
}

} // namespace Export
